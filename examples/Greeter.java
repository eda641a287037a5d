package examples;

/** Greets whom its property names. */
public class Greeter {
  private String name = "world";
  private boolean formal;

  public String getName() {
    return name;
  }

  public void setName(String name) {
    this.name = name;
  }

  public boolean isFormal() {
    return formal;
  }

  public void setFormal(boolean formal) {
    this.formal = formal;
  }

  public String greet() {
    return (formal ? "Good day, " : "Hello, ") + name + "!";
  }

  public String greetAll(String[] names) {
    return (formal ? "Good day, " : "Hello, ") + String.join(", ", names) + "!";
  }
}
