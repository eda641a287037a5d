package beans;

import java.util.Arrays;
import java.util.List;
import java.util.Vector;

/** How do objects come back, under which static type, and null? */
public class ObjectReturner {
  private final int depth;

  public ObjectReturner() { this(0); }
  private ObjectReturner(int depth) { this.depth = depth; }
  public int depth() { return depth; }
  public ObjectReturner next() { return new ObjectReturner(depth + 1); }
  public Point echo(Point value) { return value; }
  public Object echo(Object value) { return value; }
  public ObjectReturner self() { return this; }
  public Point point(int x, int y) { return new Point(x, y); }
  public Object pointAsObject() { return new Point(7, 8); }
  public Object textAsObject() { return "text"; }
  public Object arrayAsObject() { return new int[] {1, 2}; }
  public Comparable<String> textAsInterface() { return "text"; }
  public List<String> list() { return Arrays.asList("a", "b", "c"); }
  public Vector<String> vector() { return new Vector<>(Arrays.asList("a", "b")); }
  public Point nullPoint() { return null; }
  public Object nullObject() { return null; }
  public String nullText() { return null; }
  public Integer nullInteger() { return null; }
}
