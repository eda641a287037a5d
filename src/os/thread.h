#pragma once

#include <pthread.h>

// Processes and threads. Every function may be called by any thread.

// What a thread needs beside its pthread_t: nothing here.
struct OSTHREADDATA {};

unsigned int GetCurrentProcessID();

// Does nothing here.
void InitExceptionHandlers();

// Stores the calling thread; always 0.
int GetCurrentThread(pthread_t& thread);

// Starts a detached thread that runs start(arg); what that returns is dropped. Gives 0 and stores
// the thread, or -19 with `thread` as it was. `start` must not throw; it may run before `thread` is
// stored and asks GetCurrentThread for itself. `arg` stays the caller's and outlives the thread.
int CreateNewThread(unsigned int (*start)(void*), void* arg, pthread_t& thread, OSTHREADDATA& data);

// Nothing is kept for a thread, so these have nothing to do; always 0.
int DisposeThread(pthread_t thread, OSTHREADDATA& data);
void InitOSThreadData(OSTHREADDATA& data);
void CleanUpOSThreadData(OSTHREADDATA& data);

// Not supported: they do nothing and give 0.
int SuspendThread(pthread_t thread, OSTHREADDATA& data);
int ResumeThread(pthread_t thread, OSTHREADDATA& data);

// Not supported, as threads are detached: gives 1 at once, without a wait.
int WaitForThread(pthread_t thread, OSTHREADDATA& data, unsigned int timeout);
bool IsWaitForThreadSupported();
