package examples;

import java.lang.reflect.Array;

/**
 * Vectors (1-D arrays) and tables (2-D arrays). What {@link #turn} does to its argument, of any
 * primitive type or of String, is seen by the caller afterwards.
 */
public class Matrix {
  public void turn(boolean[] vector) { turnAny(vector); }
  public void turn(byte[] vector) { turnAny(vector); }
  public void turn(char[] vector) { turnAny(vector); }
  public void turn(short[] vector) { turnAny(vector); }
  public void turn(int[] vector) { turnAny(vector); }
  public void turn(long[] vector) { turnAny(vector); }
  public void turn(float[] vector) { turnAny(vector); }
  public void turn(double[] vector) { turnAny(vector); }
  public void turn(String[] vector) { turnAny(vector); }

  public void turn(boolean[][] table) { turnAny(table); }
  public void turn(byte[][] table) { turnAny(table); }
  public void turn(char[][] table) { turnAny(table); }
  public void turn(short[][] table) { turnAny(table); }
  public void turn(int[][] table) { turnAny(table); }
  public void turn(long[][] table) { turnAny(table); }
  public void turn(float[][] table) { turnAny(table); }
  public void turn(double[][] table) { turnAny(table); }
  public void turn(String[][] table) { turnAny(table); }

  public double sum(double[] vector) {
    double sum = 0.0;
    for (double value : vector) {
      sum += value;
    }
    return sum;
  }

  public double sum(double[][] table) {
    double sum = 0.0;
    for (double[] row : table) {
      sum += sum(row);
    }
    return sum;
  }

  public String join(String[] vector, String separator) {
    return String.join(separator, vector);
  }

  public double[][] multiply(double[][] left, double[][] right) {
    double[][] product = new double[left.length][right[0].length];
    for (int row = 0; row < left.length; ++row) {
      for (int column = 0; column < right[0].length; ++column) {
        for (int i = 0; i < right.length; ++i) {
          product[row][column] += left[row][i] * right[i][column];
        }
      }
    }
    return product;
  }

  /** Back to front, and the rows of a table too: half a turn. */
  private static void turnAny(Object array) {
    int last = Array.getLength(array) - 1;
    for (int i = 0; i < last - i; ++i) {
      Object front = Array.get(array, i);
      Array.set(array, i, Array.get(array, last - i));
      Array.set(array, last - i, front);
    }
    for (int i = 0; i <= last; ++i) {
      Object row = Array.get(array, i);
      if (row != null && row.getClass().isArray()) {
        turnAny(row);
      }
    }
  }
}
