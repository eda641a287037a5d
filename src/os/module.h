#pragma once

// Loaded images and their texts.

// The absolute path of the plug-in whose image handle (from dlopen) is `module`: the file that
// exports "InitHandler". Writes the path with its NUL into `buffer` of `size` bytes and gives its
// length. Gives 0, with `buffer` untouched, when `module` is no image loaded now, when it does not
// export "InitHandler" itself, or when the path does not fit.
// A path that the loader was given relative to the current directory is taken as relative to the
// directory that is current now.
// Threads: any, while the image stays loaded.
unsigned long GetModuleFileName(void* module, char* buffer, unsigned long size);

// The text with the identifier `id`, which is the text itself: copies it to `buffer` of `size`
// bytes, cut where it does not fit, always with a NUL. Gives the number of bytes written, the NUL
// included; a `size` below 1 is given back and nothing is written. `module` is not used.
// Threads: any.
int LoadString(void* module, const char* id, char* buffer, int size);
