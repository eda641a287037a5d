package beans;

/** How do arrays of every shape come back, empty and uneven ones included? */
public class ArrayMaker {
  public int[] emptyInts() { return new int[0]; }
  public int[] nullInts() { return null; }
  public int[][] emptyRows() { return new int[2][0]; }
  public int[][] noRows() { return new int[0][]; }
  public int[][] grid() { return new int[][] {{1, 2, 3}, {4, 5, 6}}; }
  public int[][] unevenRows() { return new int[][] {{1, 2, 3}, {4}, {5, 6, 7, 8}}; }
  public int[][] nullRow() { return new int[][] {{1, 2}, null, {3, 4}}; }
  public byte[][] longSecondRow() { return new byte[][] {{1, 2}, new byte[4000000]}; }
  public byte[][] hugeTable() {
    byte[][] rows = new byte[50000][];
    java.util.Arrays.fill(rows, new byte[50000]);
    return rows;
  }
  public int[][] nullFirstRow() { return new int[][] {null, {1, 2}}; }
  public int[][][] cube() { return new int[][][] {{{1}, {2}}, {{3}, {4}}}; }
  public String[] stringsWithNull() { return new String[] {"first", null, "", "last"}; }
  public String[][] stringGridWithNull() { return new String[][] {{"a", null}, {"", "d"}}; }
  public Integer[] integersWithNull() { return new Integer[] {1, null, 3}; }
  public Point[] pointsWithNull() { return new Point[] {new Point(1, 2), null, new Point(3, 4)}; }
  public Object[] mixed() { return new Object[] {"text", 7, new Point(5, 6)}; }
}
