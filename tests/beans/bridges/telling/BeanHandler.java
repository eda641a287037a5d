/** Which path arrived (it is the name of bean 0), and what becomes of a call that throws? */
public class BeanHandler {
  private String path;

  public boolean enumJavaBeans(String path) {
    this.path = path;
    return true;
  }

  public String getBeanName(int index) { return index == 0 ? path : String.valueOf(thrown()); }
  public int getBeanCount() { return thrown(); }
  public int getBeanIndex(String name) { return thrown(); }
  public int getPropertyCount(Class<?> cls) { return thrown(); }
  public int getPropertyInfo(Class<?> c, int n, String[] s, String[] t, int[] a) { return thrown(); }
  public int getMethodCount(Class<?> cls) { return thrown(); }
  public int getMethodInfo(Class<?> c, int n, String[] s, String[] t, int[] i) { return thrown(); }
  public int getParameterCount(Class<?> cls, int index) { return thrown(); }
  public int getParameterInfo(Class<?> c, int i, int n, String[] s, String[] t) { return thrown(); }
  public String getClassName(Class<?> cls) { return String.valueOf(thrown()); }

  private static int thrown() { throw new IllegalStateException("told to throw"); }
}
