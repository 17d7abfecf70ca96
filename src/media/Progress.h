// Where long work reports progress and learns that the user cancelled.
// The desktop program shows a dialog, the command line a bar on a terminal;
// the default implementation does nothing and never cancels.
#pragma once

#include <string>

namespace quillet {

class ProgressSink {
public:
    virtual ~ProgressSink() = default;
    virtual void setRange(int low, int high) {}
    virtual void setMainText(const std::string& text) {}
    virtual void setSecondaryText(const std::string& text) {}
    virtual void step(int position) {}
    virtual bool cancelled() const { return false; }
};

}  // namespace quillet
