package beans;

/** Does each scalar kind arrive and come back unchanged? */
public class ScalarEcho {
  public boolean echoBoolean(boolean value) { return value; }
  public byte echoByte(byte value) { return value; }
  public char echoChar(char value) { return value; }
  public short echoShort(short value) { return value; }
  public int echoInt(int value) { return value; }
  public long echoLong(long value) { return value; }
  public float echoFloat(float value) { return value; }
  public double echoDouble(double value) { return value; }
  public String echoString(String value) { return value; }
  public Boolean echo(Boolean value) { return value; }
  public Byte echo(Byte value) { return value; }
  public Character echo(Character value) { return value; }
  public Short echo(Short value) { return value; }
  public Integer echo(Integer value) { return value; }
  public Long echo(Long value) { return value; }
  public Float echo(Float value) { return value; }
  public Double echo(Double value) { return value; }

  /** Every kind at once, so that one argument in a wrong place shows. */
  public String combine(
      boolean z, byte b, char c, short s, int i, long j, float f, double d, String text) {
    return z + "|" + b + "|" + (int) c + "|" + s + "|" + i + "|" + j + "|" + f + "|" + d + "|" + text;
  }

  public void nothing() {}
}
