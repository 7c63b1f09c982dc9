#include "tests/life/trial.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace quill::life {

namespace {

constexpr rlim_t longest_seconds = 60;  // of processor time: the machine may be busy

[[noreturn]] void run_child(const std::function<std::string()>& action, bool quiet, int output) {
  const rlimit no_core{0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  const rlimit time{longest_seconds, longest_seconds + 1};
  setrlimit(RLIMIT_CPU, &time);
  if (quiet) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
  }
  const std::string text = action();
  const bool written = write(output, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  _exit(written ? 0 : 1);
}

}  // namespace

std::string try_apart(const std::function<std::string()>& action, bool quiet) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) {
    close(ends[0]);
    run_child(action, quiet, ends[1]);
  }
  close(ends[1]);
  std::string text;
  char buffer[4096];
  for (ssize_t n; (n = read(ends[0], buffer, sizeof buffer)) > 0;) {
    text.append(buffer, static_cast<size_t>(n));
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFSIGNALED(status)) return "ended by signal " + std::to_string(WTERMSIG(status));
  if (WEXITSTATUS(status) != 0) return "exit status " + std::to_string(WEXITSTATUS(status));
  return text;
}

}  // namespace quill::life
