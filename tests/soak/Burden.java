package soak;

import java.util.ArrayList;
import java.util.List;

/** What of bean code that takes its time, all of the stack or all of the heap? */
public class Burden {
  public int slow(int milliseconds) throws InterruptedException {
    Thread.sleep(milliseconds);
    return milliseconds;
  }

  public int recurse(int depth) { return depth == 0 ? 0 : 1 + recurse(depth - 1); }
  public int overflow() { return 1 + overflow(); }
  public void fail(String message) { throw new AssertionError(message); }

  /** Ends with the VM's own error; what was taken is free again then. */
  public int fillHeap() {
    List<long[]> all = new ArrayList<>();
    while (true) {
      all.add(new long[1 << 14]);
    }
  }
}
