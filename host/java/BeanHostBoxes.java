/**
 * Makes objects of plain values for the host, which calls it like any other bean: a literal that is
 * passed where a method wants an Object, a Number or a CharSequence has to become an object first.
 * The declared result is Object, so that the object itself comes back instead of its value.
 */
public final class BeanHostBoxes {
  public Object boxBoolean(boolean value) {
    return value;
  }

  public Object boxByte(byte value) {
    return value;
  }

  /** The one character of a text: a char would bring only one byte along. */
  public Object boxCharacter(String value) {
    return value.charAt(0);
  }

  public Object boxShort(short value) {
    return value;
  }

  public Object boxInteger(int value) {
    return value;
  }

  public Object boxLong(long value) {
    return value;
  }

  public Object boxFloat(float value) {
    return value;
  }

  public Object boxDouble(double value) {
    return value;
  }

  public Object boxString(String value) {
    return value;
  }
}
