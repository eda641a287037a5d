#include <jni.h>
