package beans;

/** Which overload ran? */
public class Overloads {
  public String which() { return "none"; }
  public String which(int value) { return "int " + value; }
  public String which(long value) { return "long " + value; }
  public String which(double value) { return "double " + value; }
  public String which(Integer value) { return "Integer " + value; }
  public String which(String value) { return "String " + value; }
  public String which(Object value) { return "Object " + value; }
  public String which(int[] values) { return "int[] " + values.length; }
  public String which(int[][] rows) { return "int[][] " + rows.length; }
  public String which(int number, String text) { return "int, String " + number + text; }
  public String which(String text, int number) { return "String, int " + text + number; }
}
