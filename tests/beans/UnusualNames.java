package beans;

/** Which names stand for properties, and can every other be called? */
public class UnusualNames {
  public String getURL() { return "url"; }
  public int getX() { return 1; }
  public int get1st() { return 2; }

  /** No accessors: the name cannot be made from the property again. */
  public int getlower() { return 3; }
  public int getaB() { return 4; }
  public boolean issue() { return true; }
  public int get() { return 5; }
  public int getÜber() { return 6; }
  public String größe(String naïve) { return "größe " + naïve; }
  public int getLooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooong() { return 127; }
  public int getLoooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooong() { return 128; }

  public int forty(
      int a0, int a1, int a2, int a3, int a4, int a5, int a6, int a7, int a8, int a9, int b0,
      int b1, int b2, int b3, int b4, int b5, int b6, int b7, int b8, int b9, int c0, int c1,
      int c2, int c3, int c4, int c5, int c6, int c7, int c8, int c9, int d0, int d1, int d2,
      int d3, int d4, int d5, int d6, int d7, int d8, int d9) {
    return a0 * 1000 + d9;
  }
}
