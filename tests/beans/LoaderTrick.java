package beans;

import java.lang.ref.WeakReference;
import java.net.URL;
import java.net.URLClassLoader;
import java.nio.charset.StandardCharsets;
import java.util.Scanner;

/** Are classes from other loaders, and names that Java's own compiler refuses, seen through? */
public class LoaderTrick {
  private WeakReference<ClassLoader> last = new WeakReference<>(null);

  /** An instance of the named class, which a new loader defines, as it does the classes that match. */
  public Object alone(String name, String own) throws Exception { return alone(name, own, ""); }

  /** The same, where the classes of the new loader lack one. */
  public Object alone(String name, String own, String lacked) throws Exception {
    URL here = LoaderTrick.class.getProtectionDomain().getCodeSource().getLocation();
    ClassLoader loader = new URLClassLoader(new URL[] {here}) {
      @Override
      protected Class<?> loadClass(String name, boolean resolve) throws ClassNotFoundException {
        Class<?> known = findLoadedClass(name);
        if (known != null) return known;
        if (name.equals(lacked)) throw new ClassNotFoundException(name);
        return name.matches(own) ? findClass(name) : super.loadClass(name, resolve);
      }
    };
    last = new WeakReference<>(loader);
    return loader.loadClass(name).getConstructor().newInstance();
  }

  public Object foreignPoint() throws Exception { return alone("beans.Point", "beans.*"); }

  /** An instance of the named class as the other object's loader sees it. */
  public Object beside(Object other, String name) throws Exception {
    return other.getClass().getClassLoader().loadClass(name).getConstructor().newInstance();
  }

  /** Is the last new loader unloaded, and so its classes? */
  public boolean isLastGone() throws Exception {
    for (int i = 0; last.get() != null && i < 20; ++i) {
      System.gc();
      Thread.sleep(10);
    }
    return last.get() == null;
  }

  /** A bean of a class that shares nothing but its name with another. */
  public Object namesake(String name) throws Exception {
    return renamed(name).getConstructor().newInstance();
  }

  /** Inherits methods whose parameters another loader knows than its own. */
  public static class Heir extends ObjectTaker {}

  /** The class "I" under another name. */
  public Class<?> renamed(String name) {
    String code = new Scanner(LoaderTrick.class.getResourceAsStream("/I.class"), "ISO-8859-1").useDelimiter("\\A").next();
    byte[] bytes = code.replace("\0\1I", "\0" + (char) name.length() + name.replace('.', '/')).getBytes(StandardCharsets.ISO_8859_1);
    return new ClassLoader() { Class<?> define() { return defineClass(name, bytes, 0, bytes.length); } }.define();
  }
}
