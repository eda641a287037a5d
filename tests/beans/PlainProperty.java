package beans;

/** What are two plain properties and one regular method? */
public class PlainProperty {
  private int color = 3;
  private String name = "plain";

  public int getColor() { return color; }
  public void setColor(int color) { this.color = color; }
  public String getName() { return name; }
  public void setName(String name) { this.name = name; }
  public int paint(String brush, int times) { return brush.length() * times; }
}
