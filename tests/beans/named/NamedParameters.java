package beans;

/** Do parameter names come through when the class file has them? */
public class NamedParameters {
  public int area(int width, int height) { return width * height; }
  public void setColor(int shade) {}
}
