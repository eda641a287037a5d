package beans;

/** The other half of GenericChild. */
public class GenericBase<T> {
  protected T value;

  public T getValue() { return value; }
  public void setValue(T value) { this.value = value; }
  public String describe(T other) { return "base " + other; }
  public int getSerial() { return 17; }
}
