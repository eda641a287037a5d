package beans;

/** What goes on meanwhile? */
public class SlowMethod {
  public int sleep(int milliseconds) throws InterruptedException {
    Thread.sleep(milliseconds);
    return milliseconds;
  }
}
