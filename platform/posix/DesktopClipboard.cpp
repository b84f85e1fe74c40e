#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/FileHandle.h"
#include "platform/Pasteboard.h"
#include "platform/Process.h"
#include "platform/base/Strings.h"

// Not every system declares it.
extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace platform {

namespace {

/// A program that puts its standard input on the clipboard of a desktop.
struct DesktopProgram {
  /// The environment variable that is set if there is a desktop of the program's kind; nullptr if there
  /// always is.
  const char* display;
  /// The command line, which ends with a null pointer.
  std::array<const char*, 5> words;
};

/// The programs in the order in which they are to be tried.
constexpr auto desktopPrograms = std::to_array<DesktopProgram>({
#ifdef __APPLE__
    // Without a locale that says otherwise, pbcopy takes its input for Mac OS Roman.
    {.display = nullptr, .words = {"env", "LC_ALL=en_US.UTF-8", "pbcopy"}},
#else
    // If the type is given, the program does not guess it from the text.
    {.display = "WAYLAND_DISPLAY", .words = {"wl-copy", "--type", "text/plain"}},
    {.display = "DISPLAY", .words = {"xclip", "-selection", "clipboard", "-in"}},
    {.display = "DISPLAY", .words = {"xsel", "--clipboard", "--input"}},
#endif
});

using std::chrono::steady_clock;

constexpr std::chrono::seconds patience{1};
constexpr std::chrono::milliseconds betweenLooks{5};

bool isSet(const char* variable) {
  return !Process::environment(variable).value_or("").empty();
}

/// Makes programs that are started from now on inherit no open files but the standard streams.
void closeFilesOnStart() {
  std::error_code failure;
  for (std::filesystem::directory_iterator file("/dev/fd", failure), end; !failure && file != end;
       file.increment(failure)) {
    const auto descriptor = Strings::decimalInteger(file->path().filename().native());
    if (descriptor && *descriptor > STDERR_FILENO)
      ::fcntl(static_cast<int>(*descriptor), F_SETFD, FD_CLOEXEC);
  }
}

/// Starts the program with `input` as its standard input. Returns nothing if that fails. The program keeps
/// running to serve the clipboard for as long as the desktop runs, so it inherits nothing of this process
/// that other programs could wait for: no open file, no folder, no terminal.
std::optional<pid_t> start(const DesktopProgram& program, const Descriptor& input) {
  closeFilesOnStart();
  posix_spawn_file_actions_t files;
  ::posix_spawn_file_actions_init(&files);
  ::posix_spawn_file_actions_adddup2(&files, input.get(), STDIN_FILENO);
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
    ::posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_addchdir_np(&files, "/");

  posix_spawnattr_t attributes;
  ::posix_spawnattr_init(&attributes);
  sigset_t signals;
  sigfillset(&signals);
  ::posix_spawnattr_setsigdefault(&attributes, &signals);
  sigemptyset(&signals);
  ::posix_spawnattr_setsigmask(&attributes, &signals);
  ::posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);

  pid_t process = 0;
  // posix_spawnp does not change the words, although the type of its parameter allows that.
  auto* const words = const_cast<char* const*>(program.words.data());
  const bool isStarted =
      ::posix_spawnp(&process, program.words.front(), &files, &attributes, words, environ) == 0;
  ::posix_spawnattr_destroy(&attributes);
  ::posix_spawn_file_actions_destroy(&files);
  return isStarted ? std::optional(process) : std::nullopt;
}

/// Writes as much as the pipe has room for. Returns false if the pipe has no reader any more.
bool writeOnto(const Descriptor& pipe, std::string_view& text) {
  const ssize_t count = ::write(pipe.get(), text.data(), text.size());
  if (count == -1) return errno == EAGAIN || errno == EINTR;
  text.remove_prefix(static_cast<std::size_t>(count));
  return true;
}

/// Returns whether the program accepts the text: it then exits with success as soon as it has read all of it.
/// If it has not exited in time, kills it and all processes that it has started.
bool takes(const DesktopProgram& program, std::string_view text) {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) == -1) return false;
  Descriptor input(ends[0]);
  Descriptor pipe(ends[1]);
  for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  ::fcntl(pipe.get(), F_SETFL, O_NONBLOCK);
  const auto process = start(program, input);
  if (!process) return false;
  input = Descriptor();

  const auto deadline = steady_clock::now() + patience;
  while (true) {
    if (pipe && (text.empty() || !writeOnto(pipe, text))) pipe = Descriptor();
    int status = 0;
    const pid_t ended = ::waitpid(*process, &status, WNOHANG);
    if (ended == *process) return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (ended == -1 && errno != EINTR) return false;
    if (steady_clock::now() >= deadline) break;
    // After the pipe is closed, this only waits.
    pollfd room{.fd = pipe.get(), .events = POLLOUT, .revents = 0};
    ::poll(&room, 1, static_cast<int>(betweenLooks.count()));
  }
  ::kill(-*process, SIGKILL);
  retrying([&] { return ::waitpid(*process, nullptr, 0); });
  return false;
}

}  // namespace

void putOnDesktopClipboard(std::string_view text) {
  // If the parent process made this one ignore SIGCHLD, `waitpid` would not return the status of a program.
  std::signal(SIGCHLD, SIG_DFL);
  for (const DesktopProgram& program : desktopPrograms) {
    const bool hasDesktop = program.display == nullptr || isSet(program.display);
    if (hasDesktop && takes(program, text)) return;
  }
}

}  // namespace platform
