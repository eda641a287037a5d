package beans;

import java.net.URL;
import java.net.URLClassLoader;

/** Is an object of a class with the right name from another loader refused? */
public class LoaderTrick {
  public Object foreignPoint() throws Exception {
    URL here = LoaderTrick.class.getProtectionDomain().getCodeSource().getLocation();
    try (URLClassLoader fresh = new URLClassLoader(new URL[] {here}, null)) {
      return fresh.loadClass("beans.Point").getConstructor().newInstance();
    }
  }
}
