/** Which path arrived (it is the name of bean 0), and what becomes of a call that throws? */
public class BeanHandler {
  private String path;

  public boolean enumJavaBeans(String path) {
    this.path = path;
    return true;
  }

  public int getBeanCount() { throw thrown("getBeanCount"); }

  public String getBeanName(int index) {
    if (index == 0) {
      return path;
    }
    throw thrown("getBeanName");
  }

  public int getBeanIndex(String name) { throw thrown("getBeanIndex"); }
  public int getPropertyCount(Class<?> cls) { throw thrown("getPropertyCount"); }
  public int getPropertyInfo(Class<?> cls, int count, String[] n, String[] t, int[] a) {
    throw thrown("getPropertyInfo");
  }
  public int getMethodCount(Class<?> cls) { throw thrown("getMethodCount"); }
  public int getMethodInfo(Class<?> cls, int count, String[] n, String[] t, int[] i) {
    throw thrown("getMethodInfo");
  }
  public int getParameterCount(Class<?> cls, int index) { throw thrown("getParameterCount"); }
  public int getParameterInfo(Class<?> c, int index, int count, String[] n, String[] t) {
    throw thrown("getParameterInfo");
  }
  public String getClassName(Class<?> cls) { throw thrown("getClassName"); }

  private static RuntimeException thrown(String method) {
    return new IllegalStateException(method);
  }
}
