/** Is a class with all methods, but one of another signature, refused? */
public class BeanHandler {
  public boolean enumJavaBeans(String path) { return true; }
  public int getBeanCount() { return 0; }
  public String getBeanName(int index) { return null; }
  public int getBeanIndex(String name) { return 0; }
  public int getPropertyCount(Class<?> cls) { return 0; }
  public int getPropertyInfo(Class<?> cls, int count, String[] n, String[] t, int[] a) { return 0; }
  public int getMethodCount(Class<?> cls) { return 0; }
  public int getMethodInfo(Class<?> cls, int count, String[] n, String[] t, long[] i) { return 0; }
  public int getParameterCount(Class<?> cls, int index) { return 0; }
  public int getParameterInfo(Class<?> c, int index, int count, String[] n, String[] t) { return 0; }
  public String getClassName(Class<?> cls) { return ""; }
}
