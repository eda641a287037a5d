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

  /** More references than a native frame has room for. */
  public int takesForty(
      String s0, String s1, String s2, String s3, String s4, String s5, String s6, String s7,
      String s8, String s9, String s10, String s11, String s12, String s13, String s14,
      String s15, String s16, String s17, String s18, String s19, String s20, String s21,
      String s22, String s23, String s24, String s25, String s26, String s27, String s28,
      String s29, String s30, String s31, String s32, String s33, String s34, String s35,
      String s36, String s37, String s38, String s39) {
    return 40;
  }
}
