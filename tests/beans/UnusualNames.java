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
}
