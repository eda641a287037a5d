package beans;

import java.util.List;

/** Does the very object arrive that was passed? */
public class ObjectTaker {
  public int takesPoint(Point point) { return point.getX() * 100 + point.getY(); }
  public int takesList(List<?> list) { return list.size(); }
  public String takesObject(Object object) { return object.getClass().getName() + " " + object; }
  public String takesComparable(Comparable<?> comparable) { return "comparable " + comparable; }

  public int takesPoints(Point[] points) {
    int sum = 0;
    for (Point point : points) {
      sum += point == null ? 1000000 : takesPoint(point);
    }
    return sum;
  }

  public boolean same(Object one, Object other) { return one == other; }

  public void move(Point point, int x, int y) {
    point.setX(x);
    point.setY(y);
  }
}
