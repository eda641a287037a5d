package bench;

/** What the benchmarks create: an object that costs the VM nothing but itself. */
public class Plain {}
