import java.io.File;
import java.io.IOException;
import java.lang.reflect.MalformedParametersException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.lang.reflect.Parameter;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashSet;
import java.util.Iterator;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;

/**
 * What the native side asks about classes: the beans of a jar or directory, and a class's
 * properties, methods and parameters in flat arrays. It needs the module java.base alone, so it
 * reads accessors by reflection itself. Types are named by {@link Class#getName}.
 *
 * <p>An instance serves one native operation on one thread. It keeps the names that the last {@link
 * #enumJavaBeans} found and the catalogue of the class asked about last. A class that cannot be
 * examined, since its members name a missing type, say, has negative counts: it is none without
 * members.
 */
public class BeanHandler {
  private List<String> beans;
  private Class<?> catalogued;
  private Catalogue catalogue;

  public BeanHandler() {}

  /** Finds the beans of a jar or below a directory; false when the path can't be examined. */
  public boolean enumJavaBeans(String path) {
    beans = null;
    if (path == null || path.isEmpty()) {
      return false;
    }
    try {
      beans = BeanHandlerDiscovery.beansOf(new File(path));
    } catch (IOException | RuntimeException | VirtualMachineError unreadable) {
      // Classes made to exhaust the stack or the heap end the search: the next would do it again.
    }
    return beans != null;
  }

  /** The number of beans found; -1 before a successful enumeration. */
  public int getBeanCount() {
    return beans == null ? -1 : beans.size();
  }

  public String getBeanName(int index) {
    return index >= 0 && index < getBeanCount() ? beans.get(index) : null;
  }

  public int getBeanIndex(String name) {
    return beans == null ? -1 : beans.indexOf(name);
  }

  public int getPropertyCount(Class<?> cls) {
    return cls == null ? 0 : examine(cls) ? catalogue.rows.size() : -1;
  }

  /** One row for each property and type; 1, or 0 when there was nothing to fill. */
  public int getPropertyInfo(
      Class<?> cls, int count, String[] names, String[] types, int[] accessors) {
    int rows = Math.min(count, getPropertyCount(cls));
    if (rows <= 0) {
      return 0;
    }
    Iterator<Map.Entry<String, Integer>> entries = catalogue.rows.entrySet().iterator();
    for (int i = 0; i < rows; ++i) {
      Map.Entry<String, Integer> entry = entries.next();
      int end = entry.getKey().indexOf(Catalogue.SEPARATOR);
      names[i] = entry.getKey().substring(0, end);
      types[i] = entry.getKey().substring(end + 1);
      accessors[i] = entry.getValue();
    }
    return 1;
  }

  public int getMethodCount(Class<?> cls) {
    return cls == null ? 0 : examine(cls) ? catalogue.methods.length : -1;
  }

  /** The methods that are no accessors; 1, or 0 when there was nothing to fill. */
  public int getMethodInfo(
      Class<?> cls, int count, String[] names, String[] returnTypes, int[] methodIndexes) {
    int filled = Math.min(count, getMethodCount(cls));
    for (int i = 0; i < filled; ++i) {
      names[i] = catalogue.methods[i].getName();
      returnTypes[i] = catalogue.methods[i].getReturnType().getName();
      methodIndexes[i] = i;
    }
    return filled > 0 ? 1 : 0;
  }

  public int getParameterCount(Class<?> cls, int methodIndex) {
    Method method = methodAt(cls, methodIndex);
    return method == null ? 0 : method.getParameterCount();
  }

  /** Names as the class file has them, else empty; 0 when there is no such method. */
  public int getParameterInfo(
      Class<?> cls, int methodIndex, int count, String[] names, String[] types) {
    Method method = methodAt(cls, methodIndex);
    if (method == null) {
      return 0;
    }
    Class<?>[] parameterTypes = method.getParameterTypes();
    String[] parameterNames = parameterNames(method);
    int filled = Math.min(count, parameterTypes.length);
    for (int i = 0; i < filled; ++i) {
      names[i] = parameterNames[i];
      types[i] = parameterTypes[i].getName();
    }
    return 1;
  }

  public String getClassName(Class<?> cls) {
    return cls == null ? null : cls.getName();
  }

  /** Makes the class the catalogued one; false when it can't be examined. */
  private boolean examine(Class<?> cls) {
    if (cls != catalogued) {
      try {
        catalogue = new Catalogue(cls);
      } catch (LinkageError | RuntimeException | VirtualMachineError unexaminable) {
        return false;
      }
      catalogued = cls;
    }
    return true;
  }

  private Method methodAt(Class<?> cls, int index) {
    return index >= 0 && index < getMethodCount(cls) ? catalogue.methods[index] : null;
  }

  private static String[] parameterNames(Method method) {
    String[] names = new String[method.getParameterCount()];
    Arrays.fill(names, "");
    try {
      Parameter[] parameters = method.getParameters();
      for (int i = 0; i < names.length; ++i) {
        if (parameters[i].isNamePresent()) {
          names[i] = parameters[i].getName();
        }
      }
    } catch (MalformedParametersException unreadable) {
      // A class file may hold anything where the names should stand; then there are none.
    }
    return names;
  }

  /** The properties and methods of one class. */
  private static final class Catalogue {
    /** Lower than any character of a name, so joined keys sort part by part. */
    static final char SEPARATOR = '\0';

    // Accessor kinds, in the order of the prefixes. The indexed ones are these shifted.
    private static final int GETTER = 1;
    private static final int SETTER = 2;
    private static final int BOOLEAN_GETTER = 4;
    private static final int INDEXED = 3;

    /** The native side writes an accessor's name into 128 bytes. */
    private static final int LONGEST_ACCESSOR = 127;

    /** Property name, separator and type name; the sum of the accessor kinds. */
    final Map<String, Integer> rows = new TreeMap<>();

    final Method[] methods;

    /** Properties with plain accessors, and the row keys that indexed ones of these may have. */
    private final Set<String> plain = new HashSet<>();

    Catalogue(Class<?> cls) {
      List<Method> callable = callableMethods(cls);
      for (int level = 0; level <= INDEXED; level += INDEXED) {
        Set<String> readable = new HashSet<>();
        takeAccessors(callable, level, false, readable);
        takeAccessors(callable, level, true, readable);
      }
      methods = overloads(callable);
    }

    /** Public instance methods without the bridges that a real method makes superfluous. */
    private static List<Method> callableMethods(Class<?> cls) {
      List<Method> callable = new ArrayList<>();
      List<Method> bridges = new ArrayList<>();
      for (Method method : cls.getMethods()) {
        if (Modifier.isStatic(method.getModifiers())
            || method.getDeclaringClass() == Object.class) {
          continue;
        }
        if (method.isBridge()) {
          bridges.add(method);
        } else if (!method.isSynthetic()) {
          callable.add(method);
        }
      }
      int real = callable.size();
      for (Method bridge : bridges) {
        boolean superfluous = false;
        for (int i = 0; !superfluous && i < real; ++i) {
          superfluous = isNarrowerOrEqual(callable.get(i), bridge);
        }
        if (!superfluous) {
          callable.add(bridge);
        }
      }
      return callable;
    }

    private static boolean isNarrowerOrEqual(Method method, Method bridge) {
      if (!method.getName().equals(bridge.getName())
          || method.getParameterCount() != bridge.getParameterCount()) {
        return false;
      }
      Class<?>[] types = method.getParameterTypes();
      Class<?>[] bridgeTypes = bridge.getParameterTypes();
      for (int i = 0; i < types.length; ++i) {
        if (!bridgeTypes[i].isAssignableFrom(types[i])) {
          return false;
        }
      }
      return true;
    }

    /**
     * Moves the readers or the writers of one level, plain or indexed, from the methods into rows.
     *
     * @param readable filled by the readers with their properties and row keys; a writer must find
     *     its row there, unless its property isn't there at all
     */
    private void takeAccessors(
        List<Method> callable, int level, boolean writers, Set<String> readable) {
      for (Iterator<Method> each = callable.iterator(); each.hasNext(); ) {
        Method method = each.next();
        int kind = accessorKind(method);
        if (kind >> level == 0
            || kind >> level > BOOLEAN_GETTER
            || writers != (kind >> level == SETTER)) {
          continue;
        }
        String property = propertyOf(method.getName(), kind >> level == BOOLEAN_GETTER ? 2 : 3);
        if (property == null) {
          continue;
        }
        Class<?> type = writers ? lastOf(method.getParameterTypes()) : method.getReturnType();
        String key = property + SEPARATOR + type.getName();
        if (level == INDEXED && plain.contains(property) && !plain.contains(key)
            || writers && readable.contains(property) && !readable.contains(key)) {
          continue;
        }
        addRow(property, type, kind);
        if (!writers) {
          readable.add(property);
          readable.add(key);
        }
        each.remove();
      }
    }

    private void addRow(String property, Class<?> type, int kind) {
      String key = property + SEPARATOR + type.getName();
      Integer kinds = rows.get(key);
      rows.put(key, kinds == null ? kind : kinds | kind);
      if (kind <= BOOLEAN_GETTER) {
        plain.add(property);
        if (type.isArray()) {
          plain.add(property + SEPARATOR + type.getComponentType().getName());
        }
      }
    }

    /** What kind of accessor a method is by its form; 0 for none. */
    private static int accessorKind(Method method) {
      String name = method.getName();
      Class<?> result = method.getReturnType();
      int kind = 0;
      if (name.startsWith("get")) {
        kind = result != void.class ? GETTER : 0;
      } else if (name.startsWith("set")) {
        kind = result == void.class ? SETTER : 0;
      } else if (name.startsWith("is")) {
        kind = result == boolean.class ? BOOLEAN_GETTER : 0;
      }
      int surplus = method.getParameterCount() - (kind == SETTER ? 1 : 0);
      if (kind == 0 || surplus == 0) {
        return kind;
      }
      boolean indexed = surplus == 1 && method.getParameterTypes()[0] == int.class;
      return indexed ? kind << INDEXED : 0;
    }

    /**
     * The property that an accessor is for. Null when its name isn't the prefix and the property
     * with the first letter in upper case, in as many ASCII characters as the native side takes.
     */
    private static String propertyOf(String accessor, int prefix) {
      if (accessor.length() == prefix || accessor.length() > LONGEST_ACCESSOR) {
        return null;
      }
      for (int i = prefix; i < accessor.length(); ++i) {
        if (accessor.charAt(i) > 127 || accessor.charAt(i) == SEPARATOR) {
          return null;
        }
      }
      char first = accessor.charAt(prefix);
      if (Character.isLowerCase(first)) {
        return null;
      }
      boolean abbreviation =
          Character.isUpperCase(first)
              && accessor.length() > prefix + 1
              && Character.isUpperCase(accessor.charAt(prefix + 1));
      return abbreviation
          ? accessor.substring(prefix)
          : Character.toLowerCase(first) + accessor.substring(prefix + 1);
    }

    /** One method for each name and parameter types, sorted by these. */
    private static Method[] overloads(List<Method> callable) {
      Map<String, Method> chosen = new TreeMap<>();
      for (Method method : callable) {
        StringBuilder key = new StringBuilder(method.getName()).append(SEPARATOR);
        String comma = "";
        for (Class<?> type : method.getParameterTypes()) {
          key.append(comma).append(type.getName());
          comma = ",";
        }
        Method other = chosen.putIfAbsent(key.toString(), method);
        if (other != null && isBetter(method.getReturnType(), other.getReturnType())) {
          chosen.put(key.toString(), method);
        }
      }
      return chosen.values().toArray(new Method[0]);
    }

    /** The most specific result is the best; unrelated ones go by name, to have one answer. */
    private static boolean isBetter(Class<?> result, Class<?> than) {
      if (result == than || result.isAssignableFrom(than)) {
        return false;
      }
      return than.isAssignableFrom(result) || result.getName().compareTo(than.getName()) < 0;
    }

    private static Class<?> lastOf(Class<?>[] types) {
      return types[types.length - 1];
    }
  }
}
