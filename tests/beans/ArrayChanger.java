package beans;

import java.lang.reflect.Array;
import java.util.Arrays;

/** Do changes that a method makes to its array arguments come back? */
public class ArrayChanger {
  public void reverse(boolean[] values) { turn(values); }
  public void reverse(byte[] values) { turn(values); }
  public void reverse(char[] values) { turn(values); }
  public void reverse(short[] values) { turn(values); }
  public void reverse(int[] values) { turn(values); }
  public void reverse(long[] values) { turn(values); }
  public void reverse(float[] values) { turn(values); }
  public void reverse(double[] values) { turn(values); }
  public void reverse(String[] values) { turn(values); }
  public void reverse(boolean[][] rows) { turn(rows); }
  public void reverse(byte[][] rows) { turn(rows); }
  public void reverse(char[][] rows) { turn(rows); }
  public void reverse(short[][] rows) { turn(rows); }
  public void reverse(int[][] rows) { turn(rows); }
  public void reverse(long[][] rows) { turn(rows); }
  public void reverse(float[][] rows) { turn(rows); }
  public void reverse(double[][] rows) { turn(rows); }
  public void reverse(String[][] rows) { turn(rows); }
  public void reverse(Point[] values) { turn(values); }

  public int[] reverseAndReturn(int[] values) {
    turn(values);
    return values;
  }

  public void clear(String[] values) { Arrays.fill(values, null); }
  public void shortenFirstRow(int[][] rows) { rows[0] = new int[] {rows[0][0]}; }

  public void lengthenLastRow(int[][] rows) {
    rows[rows.length - 1] = Arrays.copyOf(rows[rows.length - 1], rows[0].length + 1);
  }

  public void dropLastRow(int[][] rows) { rows[rows.length - 1] = null; }

  public void changeAndThrow(int[] values) {
    values[0] = -1;
    throw new IllegalStateException("changed " + values.length);
  }

  /** Reverses an array, and its rows where it has any. */
  private static void turn(Object array) {
    int last = Array.getLength(array) - 1;
    for (int i = 0; 2 * i <= last; ++i) {
      Object low = Array.get(array, i);
      Array.set(array, i, Array.get(array, last - i));
      Array.set(array, last - i, low);
    }
    for (int i = 0; i <= last; ++i) {
      Object row = Array.get(array, i);
      if (row != null && row.getClass().isArray()) {
        turn(row);
      }
    }
  }
}
