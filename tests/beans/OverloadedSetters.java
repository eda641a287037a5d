package beans;

/** Which of several setters stand? One with a result is a regular method. */
public class OverloadedSetters {
  public int getValue() { return 1; }
  public void setValue(int value) {}
  public void setValue(String value) {}
  public void setValue(long value) {}

  /** Write-only: each setter makes a row. */
  public void setMode(int mode) {}
  public void setMode(String mode) {}
  public int getWidth() { return 2; }
  public OverloadedSetters setWidth(int width) { return this; }
}
