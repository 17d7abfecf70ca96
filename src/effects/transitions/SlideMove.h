// The options shared by "Slide In From" and "Slide Out To": an offset and a
// scale for the moving slide's far end (where it comes from, or where it
// goes), and whether the outgoing slide fades meanwhile.
#pragma once

#include "effects/transitions/OptionKit.h"

namespace quillet {

class SlideMoveTransition : public Transition {
public:
    int32_t finalX = 0;     // `final_x`, twips
    int32_t finalY = 0;     // `final_y`, twips
    double finalSX = 0.0;   // `final_sx`, scale factor
    double finalSY = 0.0;   // `final_sy`
    bool fadeOut = true;    // `fade_out`

    void CopyFrom(const Transition& source) override;
    void ResetOptions() override;
    void ReadOptions(const XmlNode& element) override;
    void WriteOptions(XmlWriter& writer) const override;
    // "Delta X:", "Delta Y:", the two scale fields, then the "Fade Out" box.
    std::vector<TransitionOption> Options() const override;
    double OptionValue(size_t index) const override;
    bool SetOptionValue(size_t index, double value) override;

protected:
    // scaleWord is "Start" or "End", giving "Start Scale X:" and so on.
    SlideMoveTransition(std::string name, const char* scaleWord);

private:
    const char* scaleWord_;
};

}  // namespace quillet
