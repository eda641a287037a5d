package beans;

/** Which setter ran, and which of several stand? */
public class OverloadedSetters {
  private String last = "none";

  public String last() { return last; }
  public int getValue() { return 1; }
  public void setValue(int value) { last = "int " + value; }
  public void setValue(String value) { last = "String " + value; }
  public void setValue(long value) { last = "long " + value; }

  /** Write-only: each setter makes a row. */
  public void setMode(int mode) { last = "mode int " + mode; }
  public void setMode(String mode) { last = "mode String " + mode; }
}
