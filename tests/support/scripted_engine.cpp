// A UCI engine for tests that plays scripted moves and, by flags, every misbehaviour an engine may have. It
// plays no chess. Standard C++ and POSIX only, so that it is small and starts at once.
//
// Normal play
//   --name=TEXT --author=TEXT   the id lines; --no-id sends none
//   --moves=e7e5,b8c6           the answers to "go", one each; "(none)" after the last
//   --game=e2e4,e7e5,g1f3       answers with the move that follows those of the last "position"
//   --move-delay-ms=N           time before each answer
//   --times=FILE                appends, after each answer, "<ply> <read> <answered>": plies played before,
//   and the
//                               moments in nanoseconds at which "go" was read and the answer was written
//   --record=FILE               appends every received line
//   --pid-file=FILE             writes the process id, and the helper child's on a second line
//   --list-fds=FILE             writes the open descriptors and the signal state of this process
// Misbehaviour
//   --silent                    reads and never answers
//   --uciok-delay-ms=N          answers "uci" late
//   --split-uciok               writes "uci" and "ok\n" in two reads
//   --crlf                      ends its lines with carriage return and newline
//   --stderr                    answers on standard error
//   --exit-at=STAGE, --crash-at=STAGE, --stop-at=STAGE, --deaf-at=STAGE
//                               start, uci, isready, go, answered: exits, crashes, stops itself, reads no
//                               more
//   --ignore-quit, --ignore-term
//   --late                      with both of the former: answers the search after "quit"
//   --child                     starts a helper child that ignores the terminate signal
//   --flood-seconds=S --flood-rate=N   on "go": N numbered info lines a second
//   --flood-lines=N             on "go": N numbered info lines as fast as they go
//   --giant=BYTES               on "go": one line of that length; with --stderr on standard error
//   --giant-unfinished          without a newline at its end
//   --undecodable, --nul        on "go": bytes that are not UTF-8 in a read of their own; control characters
#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

class Flags {
  public:
    Flags(int argc, char** argv) {
        for (int i = 1; i < argc; ++i) {
            std::string text = argv[i];
            text.erase(0, std::min<std::size_t>(2, text.size()));
            const std::size_t equals = text.find('=');
            values_[text.substr(0, equals)] = equals == std::string::npos ? "" : text.substr(equals + 1);
        }
    }
    bool has(const std::string& name) const { return values_.count(name) != 0; }
    std::string text(const std::string& name, const std::string& otherwise = "") const {
        const auto found = values_.find(name);
        return found == values_.end() ? otherwise : found->second;
    }
    long long number(const std::string& name) const { return std::atoll(text(name, "0").c_str()); }

  private:
    std::map<std::string, std::string> values_;
};

class Engine {
  public:
    explicit Engine(const Flags& flags) : flags_(flags), fd_(flags.has("stderr") ? 2 : 1) {
        std::istringstream moves(flags.text(flags.has("game") ? "game" : "moves"));
        for (std::string move; std::getline(moves, move, ',');)
            moves_.push_back(move);
    }

    int run() {
        if (flags_.has("ignore-term")) signal(SIGTERM, SIG_IGN);
        describeSelf();
        reach("start");
        for (std::string line; std::getline(std::cin, line);) {
            record(line);
            if (line == "quit") {
                if (flags_.has("late")) {
                    pause(50);
                    answer();
                }
                if (!flags_.has("ignore-quit")) return 0;
            } else if (!flags_.has("silent")) {
                react(line);
            }
        }
        // End of input: a well-behaved engine ends as well.
        while (flags_.has("ignore-quit"))
            ::pause();
        return 0;
    }

  private:
    void react(const std::string& line) {
        if (line == "uci") {
            onUci();
        } else if (line == "isready") {
            reach("isready");
            say("readyok");
        } else if (line.rfind("position", 0) == 0) {
            ply_ = pliesIn(line);
            if (flags_.has("game")) next_ = ply_;
        } else if (line.rfind("go", 0) == 0) {
            const long long read = nanoseconds();
            onGo();
            if (flags_.has("times")) {
                std::ostringstream entry;
                entry << ply_ << ' ' << read << ' ' << answered_ << '\n';
                std::ofstream(flags_.text("times"), std::ios::app) << entry.str();
            }
        }
    }

    static std::size_t pliesIn(const std::string& position) {
        const std::size_t moves = position.find(" moves ");
        if (moves == std::string::npos) return 0;
        std::istringstream words(position.substr(moves + 7));
        std::size_t count = 0;
        for (std::string word; words >> word;)
            ++count;
        return count;
    }

    static long long nanoseconds() {
        return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
    }

    void onUci() {
        reach("uci");
        pause(flags_.number("uciok-delay-ms"));
        if (!flags_.has("no-id")) {
            say("id name " + flags_.text("name", "Scripted"));
            say("id author " + flags_.text("author", "Nobody"));
        }
        if (flags_.has("split-uciok")) {
            write("uci");
            waitUntilRead();
            write("ok\n");
        } else {
            say("uciok");
        }
    }

    void onGo() {
        reach("go");
        if (flags_.has("flood-lines")) flood(flags_.number("flood-lines"), 0);
        if (flags_.has("flood-seconds")) {
            const long long rate = flags_.number("flood-rate");
            flood(flags_.number("flood-seconds") * rate, rate);
        }
        if (flags_.has("giant")) giant(flags_.number("giant"));
        if (flags_.has("undecodable")) {
            waitUntilRead();
            write("info depth 9 \xff\xfe nodes 1\n");
            waitUntilRead();
        }
        if (flags_.has("nul")) {
            const char line[] = "info depth 7 \0 \x01\x02\x1b[31m nodes 77\n";
            write(std::string(line, sizeof line - 1));
        }
        pause(flags_.number("move-delay-ms"));
        if (!flags_.has("late")) answer();
        reach("answered");
    }

    void answer() {
        answered_ = nanoseconds();
        say("bestmove " + (next_ < moves_.size() ? moves_[next_] : std::string("(none)")));
        ++next_;
    }

    // Numbered, so that a lost, doubled or moved line shows. `rate` in lines a second; 0 is as fast as it
    // goes.
    void flood(long long lines, long long rate) {
        const auto start = std::chrono::steady_clock::now();
        std::string buffer;
        const long long portion = rate > 0 ? std::max(1LL, rate / 200) : 256;
        for (long long i = 1; i <= lines; ++i) {
            buffer += "info depth " + std::to_string(1 + i % 60) + " seldepth 40 multipv 1 score cp " +
                      std::to_string(i % 400 - 200) + " nodes " + std::to_string(i) +
                      " nps 1500000 hashfull 12 time " + std::to_string(i / 100) +
                      " pv e2e4 e7e5 g1f3 b8c6 f1b5 a7a6\n";
            if (i % portion != 0 && i != lines) continue;
            write(buffer);
            buffer.clear();
            if (rate > 0)
                std::this_thread::sleep_until(start + std::chrono::microseconds(i * 1'000'000 / rate));
        }
    }

    void giant(long long bytes) {
        const std::string block(64 * 1024, 'x');
        write("info string ");
        for (long long left = bytes; left > 0; left -= static_cast<long long>(block.size()))
            write(block.substr(0, static_cast<std::size_t>(std::min<long long>(left, 64 * 1024))));
        if (!flags_.has("giant-unfinished")) write("\n");
    }

    void reach(const std::string& stage) {
        if (flags_.text("exit-at") == stage) _exit(0);
        if (flags_.text("crash-at") == stage) {
            const rlimit none{0, 0};
            setrlimit(RLIMIT_CORE, &none);
            signal(SIGSEGV, SIG_DFL);
            raise(SIGSEGV);
        }
        if (flags_.text("stop-at") == stage) raise(SIGSTOP);
        while (flags_.text("deaf-at") == stage)
            ::pause();
    }

    void describeSelf() {
        pid_t child = 0;
        if (flags_.has("child")) {
            child = fork();
            if (child == 0) {
                signal(SIGTERM, SIG_IGN);
                for (;;)
                    ::pause();
            }
        }
        if (flags_.has("pid-file")) {
            std::ofstream file(flags_.text("pid-file") + ".new");
            file << getpid() << '\n';
            if (child != 0) file << child << '\n';
            file.close();
            std::rename((flags_.text("pid-file") + ".new").c_str(), flags_.text("pid-file").c_str());
        }
        if (flags_.has("list-fds")) {
            std::string text;
            for (int fd = 0; fd < 4096; ++fd) {
                if (fcntl(fd, F_GETFD) >= 0) text += "fd " + std::to_string(fd) + '\n';
            }
            std::ifstream status("/proc/self/status");
            for (std::string line; std::getline(status, line);) {
                if (line.rfind("Sig", 0) == 0) text += line + '\n';
            }
            text += "group " + std::to_string(getpgrp() == getpid()) + '\n';
            std::ofstream(flags_.text("list-fds")) << text;
        }
    }

    void record(const std::string& line) {
        if (flags_.has("record")) std::ofstream(flags_.text("record"), std::ios::app) << line << '\n';
    }

    void say(const std::string& line) { write(line + (flags_.has("crlf") ? "\r\n" : "\n")); }

    void write(const std::string& bytes) {
        for (std::size_t done = 0; done < bytes.size();) {
            const ssize_t count = ::write(fd_, bytes.data() + done, bytes.size() - done);
            if (count < 0) _exit(1);
            done += static_cast<std::size_t>(count);
        }
    }

    // Until the other side has taken everything out of the pipe: what follows comes in another read.
    void waitUntilRead() {
        for (int left = 1; ioctl(fd_, FIONREAD, &left) == 0 && left > 0;)
            pause(1);
    }

    static void pause(long long milliseconds) {
        if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }

    const Flags& flags_;
    const int fd_;
    std::vector<std::string> moves_;
    std::size_t next_ = 0;
    std::size_t ply_ = 0;
    long long answered_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    const Flags flags(argc, argv);
    return Engine(flags).run();
}
