package examples;

import java.util.ArrayList;
import java.util.List;

/** Holds a temperature within bounds and remembers what it was set to. */
public class Thermostat {
  private static final double LOWEST = 5.0;
  private static final double HIGHEST = 30.0;

  private final Journal journal = new Journal();
  private double target = 20.0;

  public double getTarget() {
    return target;
  }

  public void setTarget(double celsius) {
    if (celsius < LOWEST || celsius > HIGHEST) {
      throw new IllegalArgumentException(
          celsius + " is outside of " + LOWEST + " to " + HIGHEST + " degrees");
    }
    journal.add("set to " + celsius);
    target = celsius;
  }

  /** Follows the measured temperatures and replaces each by the heating power in percent. */
  public void regulate(double[] celsius) {
    for (int i = 0; i < celsius.length; ++i) {
      celsius[i] = Math.max(0.0, Math.min(100.0, (target - celsius[i]) * 25.0));
    }
  }

  public Journal getJournal() {
    return journal;
  }

  /** What happened so far: a collection to walk. */
  public static class Journal extends ArrayList<String> {
    private static final long serialVersionUID = 1L;

    public List<String> latest(int count) {
      return subList(Math.max(0, size() - count), size());
    }
  }
}
