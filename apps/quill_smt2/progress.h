// A stream buffer that reads another one and shows on one line how much it has read.
//
// It shows nothing before 16 MiB are read, and nothing at all for inputs known to be no larger.
// From then on the line, "read 23 of 50 MiB" or "read 23 MiB", changes with each MiB; the
// destructor erases it. The line goes to the given stream at once; that stream is best unbuffered,
// and a terminal.

#ifndef APPS_QUILL_SMT2_PROGRESS_H
#define APPS_QUILL_SMT2_PROGRESS_H

#include <cstdint>
#include <ostream>
#include <streambuf>
#include <string>

namespace quill::smt2::app {

class ProgressBuffer : public std::streambuf {
 public:
  static constexpr uint64_t mebibyte = uint64_t{1} << 20;
  static constexpr uint64_t shown_above = 16 * mebibyte;

  // Both must outlive the buffer. A total of 0 bytes means that the total is not known.
  ProgressBuffer(std::streambuf& source_, uint64_t total_, std::ostream& out_);
  ProgressBuffer(const ProgressBuffer&) = delete;
  ProgressBuffer& operator=(const ProgressBuffer&) = delete;
  ~ProgressBuffer() override;

 protected:
  int_type underflow() override;
  int_type uflow() override;
  std::streamsize xsgetn(char* target, std::streamsize count) override;

 private:
  void advance(uint64_t count);

  std::streambuf& source;
  const uint64_t total;
  std::ostream& out;
  uint64_t done = 0;
  std::string line;  // what is shown; empty: nothing yet
};

}  // namespace quill::smt2::app

#endif
