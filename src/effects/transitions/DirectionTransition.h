// A transition whose only saved option is one index chosen from a list
// ("direction" for most classes), described by a KeywordOptionSpec.
#pragma once

#include "effects/transitions/OptionKit.h"

namespace quillet {

class DirectionTransition : public Transition {
public:
    int32_t direction;

    void CopyFrom(const Transition& source) override;
    void ResetOptions() override;
    void ReadOptions(const XmlNode& element) override;
    void WriteOptions(XmlWriter& writer) const override;
    std::vector<TransitionOption> Options() const override;
    double OptionValue(size_t index) const override;
    bool SetOptionValue(size_t index, double value) override;

    const KeywordOptionSpec& table() const { return table_; }

protected:
    DirectionTransition(std::string name, const KeywordOptionSpec& table);

private:
    const KeywordOptionSpec& table_;
};

}  // namespace quillet
