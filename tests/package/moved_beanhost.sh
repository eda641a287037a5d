. "${0%/*}/expect.sh"
beanhost="$1/bin/beanhost"
expect "beanhost $VERSION" "$beanhost" --version
expect "$1/etc/quenlatrix/Configuration/handlers.ini*used: serves JAVABEAN from $1/*" \
  "$beanhost" handlers
expect "java.lang.StringBuilder: hello" \
  "$beanhost" call java.lang.StringBuilder 'append(java.lang.String)' hello
# A literal where an object is expected needs beanhost's own jar.
expect "true" "$beanhost" call java.util.ArrayList 'add(java.lang.Object)' 5

# The class-path file is edited among the other configuration.
echo "$BUILD/bin/examples.jar" >"$1/etc/quenlatrix/beanpaths.ini"
CLASSPATH= expect "*greetAll*" "$beanhost" describe examples.Greeter
