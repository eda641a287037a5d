#pragma once

// Names for clang's thread-safety attributes, which have no portable spelling: with clang and
// -Wthread-safety an access to a guarded member without its lock is a compile error, for other
// compilers they mean nothing.

#if defined(__clang__)
#define QUENLATRIX_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define QUENLATRIX_THREAD_ATTRIBUTE(x)
#endif

// On a class: a lock.
#define CAPABILITY(name) QUENLATRIX_THREAD_ATTRIBUTE(capability(name))
// On a class: a scope that takes a lock in its constructor and gives it back in its destructor.
#define SCOPED_CAPABILITY QUENLATRIX_THREAD_ATTRIBUTE(scoped_lockable)

// On a member: read and written only under `lock`; or, for a pointer, what it points at is.
#define GUARDED_BY(lock) QUENLATRIX_THREAD_ATTRIBUTE(guarded_by(lock))
#define PT_GUARDED_BY(lock) QUENLATRIX_THREAD_ATTRIBUTE(pt_guarded_by(lock))

// On a function: the caller holds the named locks; or doesn't.
#define REQUIRES(...) QUENLATRIX_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define EXCLUDES(...) QUENLATRIX_THREAD_ATTRIBUTE(locks_excluded(__VA_ARGS__))

// On a function: it takes the lock, takes it when it returns the given value, or gives it back.
#define ACQUIRE(...) QUENLATRIX_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define TRY_ACQUIRE(...) QUENLATRIX_THREAD_ATTRIBUTE(try_acquire_capability(__VA_ARGS__))
#define RELEASE(...) QUENLATRIX_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))

// On a function: how it locks depends on the run, which the analysis can't follow.
#define NO_THREAD_SAFETY_ANALYSIS QUENLATRIX_THREAD_ATTRIBUTE(no_thread_safety_analysis)
