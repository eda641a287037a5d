package beans;

import java.util.Arrays;

/** What exactly did an array hold when it arrived? */
public class ArrayText {
  public String text(boolean[] values) { return Arrays.toString(values); }
  public String text(byte[] values) { return Arrays.toString(values); }
  public String text(char[] values) { return Arrays.toString(values); }
  public String text(short[] values) { return Arrays.toString(values); }
  public String text(int[] values) { return Arrays.toString(values); }
  public String text(long[] values) { return Arrays.toString(values); }
  public String text(float[] values) { return Arrays.toString(values); }
  public String text(double[] values) { return Arrays.toString(values); }
  public String text(String[] values) { return Arrays.toString(values); }
  public String text(boolean[][] rows) { return Arrays.deepToString(rows); }
  public String text(byte[][] rows) { return Arrays.deepToString(rows); }
  public String text(char[][] rows) { return Arrays.deepToString(rows); }
  public String text(short[][] rows) { return Arrays.deepToString(rows); }
  public String text(int[][] rows) { return Arrays.deepToString(rows); }
  public String text(long[][] rows) { return Arrays.deepToString(rows); }
  public String text(float[][] rows) { return Arrays.deepToString(rows); }
  public String text(double[][] rows) { return Arrays.deepToString(rows); }
  public String text(String[][] rows) { return Arrays.deepToString(rows); }
  public String text(Object[] values) { return Arrays.toString(values); }
  public String text(Point[] values) { return Arrays.toString(values); }
  public String classOf(Object[] values) { return values.getClass().getName(); }
}
