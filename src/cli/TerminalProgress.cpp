#include "cli/TerminalProgress.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace quillet::cli {

namespace {
std::atomic<bool> g_interrupted{false};

void onInterrupt(int) {
    if (g_interrupted.exchange(true)) {
        // Second Ctrl-C: stop now with the usual status of a SIGINT death.
        std::signal(SIGINT, SIG_DFL);
        std::raise(SIGINT);
    }
}
}  // namespace

TerminalProgress::TerminalProgress() : tty_(isatty(STDERR_FILENO) != 0) {
    g_interrupted = false;
    std::signal(SIGINT, onInterrupt);
}

TerminalProgress::~TerminalProgress() {
    finish();
    std::signal(SIGINT, SIG_DFL);
}

void TerminalProgress::setRange(int low, int high) {
    low_ = low;
    high_ = high;
    draw();
}

void TerminalProgress::setMainText(const std::string& text) {
    main_ = text;
    draw();
}

void TerminalProgress::setSecondaryText(const std::string& text) {
    secondary_ = text;
    draw();
}

void TerminalProgress::step(int position) {
    position_ = position;
    draw();
}

bool TerminalProgress::cancelled() const { return g_interrupted.load(); }

void TerminalProgress::draw() {
    if (!tty_) return;
    constexpr int kWidth = 30;
    int span = high_ - low_;
    int filled = span > 0 ? (position_ - low_) * kWidth / span : 0;
    if (filled < 0) filled = 0;
    if (filled > kWidth) filled = kWidth;
    std::string bar(static_cast<size_t>(filled), '#');
    bar.append(static_cast<size_t>(kWidth - filled), '-');
    std::fprintf(stderr, "\r\033[K[%s] %s  %s", bar.c_str(), main_.c_str(), secondary_.c_str());
    std::fflush(stderr);
    drawn_ = true;
}

void TerminalProgress::finish() {
    if (tty_ && drawn_) {
        std::fputs("\r\033[K", stderr);
        std::fflush(stderr);
    }
    drawn_ = false;
}

}  // namespace quillet::cli
