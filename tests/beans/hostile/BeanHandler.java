/** Is a class with the name of the plug-in's helper taken in its place? */
public class BeanHandler {
  static { System.out.println("an impostor runs"); }
}
