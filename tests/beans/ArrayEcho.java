package beans;

/** Does an array of each element kind come back as it went in? */
public class ArrayEcho {
  public boolean[] echo(boolean[] values) { return values; }
  public byte[] echo(byte[] values) { return values; }
  public char[] echo(char[] values) { return values; }
  public short[] echo(short[] values) { return values; }
  public int[] echo(int[] values) { return values; }
  public long[] echo(long[] values) { return values; }
  public float[] echo(float[] values) { return values; }
  public double[] echo(double[] values) { return values; }
  public String[] echo(String[] values) { return values; }
  public boolean[][] echo(boolean[][] rows) { return rows; }
  public byte[][] echo(byte[][] rows) { return rows; }
  public char[][] echo(char[][] rows) { return rows; }
  public short[][] echo(short[][] rows) { return rows; }
  public int[][] echo(int[][] rows) { return rows; }
  public long[][] echo(long[][] rows) { return rows; }
  public float[][] echo(float[][] rows) { return rows; }
  public double[][] echo(double[][] rows) { return rows; }
  public String[][] echo(String[][] rows) { return rows; }
  public Object[] echo(Object[] values) { return values; }
  public Integer[] echo(Integer[] values) { return values; }
  public Point[] echo(Point[] values) { return values; }
  public int[][][] echo(int[][][] cube) { return cube; }
}
