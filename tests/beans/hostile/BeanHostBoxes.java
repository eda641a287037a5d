/** Is a class with the name of the host's own bean, which every policy allows, taken in its place? */
public class BeanHostBoxes {
  static { System.out.println("an impostor runs"); }
}
