#pragma once

#include <string>
#include <string_view>

namespace quenlatrix::host {

// Standard output, kept for the host's documents alone. Taking it moves descriptor 1 to standard
// error, so whatever else writes there (a bean's System.out, the machine's warnings) cannot come
// between. A standard descriptor that the program got closed then leads to "/dev/null": no file
// that is opened later takes its place. One thread at a time writes.
class DocumentOutput {
 public:
  // Takes standard output over. To be made once, before anything is written, a file is opened or
  // the virtual machine starts; what C stdio still buffers is flushed first.
  DocumentOutput();
  // Closes the private descriptor; descriptor 1 stays where it was moved.
  ~DocumentOutput();
  DocumentOutput(const DocumentOutput&) = delete;
  DocumentOutput& operator=(const DocumentOutput&) = delete;

  // Writes the whole text at once, unbuffered. False when standard output takes no more (closed,
  // full); errno then says why.
  bool Write(std::string_view text);
  // Whether standard output is a terminal.
  bool IsTerminal() const;
  // Whether what is written may come to be seen on a terminal: a pipe can lead there, too.
  bool MayBeSeen() const;

 private:
  int descriptor = -1;
};

}  // namespace quenlatrix::host
