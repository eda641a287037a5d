import java.util.ArrayList;
import java.util.Collections;
import java.util.HashMap;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.atomic.AtomicLong;

/**
 * What the host has done in Java; it calls this class like any other bean.
 *
 * <p>It makes objects of plain values: a literal that is passed where a method wants an Object, a
 * Number or a CharSequence has to become an object first. The declared result is Object, so that
 * the object itself comes back instead of its value.
 *
 * <p>And it answers for the classes of objects: the classes alone are asked, none of which can
 * answer with code of its own.
 */
public final class BeanHostBoxes {
  private static final AtomicLong LAST_NUMBER = new AtomicLong();

  /** Hangs on the class, so it keeps none from being unloaded, and no class gets another's number. */
  private static final ClassValue<Long> NUMBERS =
      new ClassValue<Long>() {
        @Override
        protected Long computeValue(Class<?> type) {
          return isFoundByItsName(type) ? 0L : LAST_NUMBER.incrementAndGet();
        }
      };

  private static boolean isFoundByItsName(Class<?> type) {
    try {
      // Without running the static initialisers of whatever class is found.
      return type == Class.forName(type.getName(), false, ClassLoader.getSystemClassLoader());
    } catch (ClassNotFoundException | LinkageError none) {
      return false;
    }
  }

  /**
   * "NUMBER NAME" of an object's class: 0 for the class that the name finds on the class path, a
   * number of its own for any other.
   */
  public String classOf(Object value) {
    Class<?> type = value.getClass();
    return NUMBERS.get(type) + " " + type.getName();
  }

  /**
   * "DISTANCE NAME" of an object's class (0) and of its supertypes: the longest way up; one more
   * than the farthest of all for java.lang.Object.
   */
  public String[] supertypesOf(Object value) {
    List<Class<?>> types = new ArrayList<>();
    addBehindSupertypes(value.getClass(), types, new HashSet<>());
    Collections.reverse(types);
    Map<Class<?>, Integer> distances = new HashMap<>();
    int farthest = 0;
    for (Class<?> type : types) {
      int distance = distances.computeIfAbsent(type, first -> 0);
      for (Class<?> direct : directSupertypes(type)) {
        distances.merge(direct, distance + 1, Math::max);
      }
      farthest = Math.max(farthest, type == Object.class ? 0 : distance);
    }
    List<String> texts = new ArrayList<>();
    for (Class<?> type : types) {
      boolean isRoot = type == Object.class && type != value.getClass();
      texts.add((isRoot ? farthest + 1 : distances.get(type)) + " " + type.getName());
    }
    return texts.toArray(new String[0]);
  }

  /** Each type once, behind all of its supertypes. */
  private static void addBehindSupertypes(
      Class<?> type, List<Class<?>> types, Set<Class<?>> known) {
    if (!known.add(type)) return;
    for (Class<?> direct : directSupertypes(type)) {
      addBehindSupertypes(direct, types, known);
    }
    types.add(type);
  }

  private static List<Class<?>> directSupertypes(Class<?> type) {
    List<Class<?>> direct = new ArrayList<>();
    Collections.addAll(direct, type.getInterfaces());
    if (type.getSuperclass() != null) direct.add(type.getSuperclass());
    return direct;
  }

  public Object boxBoolean(boolean value) {
    return value;
  }

  public Object boxByte(byte value) {
    return value;
  }

  /** The one character of a text: a char would bring only one byte along. */
  public Object boxCharacter(String value) {
    return value.charAt(0);
  }

  public Object boxShort(short value) {
    return value;
  }

  public Object boxInteger(int value) {
    return value;
  }

  public Object boxLong(long value) {
    return value;
  }

  public Object boxFloat(float value) {
    return value;
  }

  public Object boxDouble(double value) {
    return value;
  }

  public Object boxString(String value) {
    return value;
  }
}
