package beans;

/** Is a setter with a result a regular method? */
public class FluentSetter {
  private int width;

  public int getWidth() { return width; }

  public FluentSetter setWidth(int width) {
    this.width = width;
    return this;
  }
}
