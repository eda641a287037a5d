/** What becomes of a host whose bean ends the VM? */
public class VmEnder {
  public void exit(int status) { System.exit(status); }
  public void halt(int status) { Runtime.getRuntime().halt(status); }
}
