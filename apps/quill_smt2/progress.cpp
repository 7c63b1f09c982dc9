#include "apps/quill_smt2/progress.h"

namespace quill::smt2::app {

ProgressBuffer::ProgressBuffer(std::streambuf& source_, uint64_t total_, std::ostream& out_)
    : source(source_), total(total_), out(out_) {}

ProgressBuffer::~ProgressBuffer() {
  // Spaces rather than a control sequence, which not every terminal has.
  if (!line.empty()) out << '\r' << std::string(line.size(), ' ') << '\r' << std::flush;
}

ProgressBuffer::int_type ProgressBuffer::underflow() { return source.sgetc(); }

ProgressBuffer::int_type ProgressBuffer::uflow() {
  const int_type byte = source.sbumpc();
  if (!traits_type::eq_int_type(byte, traits_type::eof())) advance(1);
  return byte;
}

std::streamsize ProgressBuffer::xsgetn(char* target, std::streamsize count) {
  const std::streamsize got = source.sgetn(target, count);
  advance(static_cast<uint64_t>(got));
  return got;
}

void ProgressBuffer::advance(uint64_t count) {
  const uint64_t mebibytes_before = done / mebibyte;
  done += count;
  if (done / mebibyte == mebibytes_before || done < shown_above) return;
  if (total != 0 && total <= shown_above) return;
  line = "read " + std::to_string(done / mebibyte);
  if (total != 0) line += " of " + std::to_string(total / mebibyte);
  line += " MiB";
  out << '\r' << line << std::flush;
}

}  // namespace quill::smt2::app
