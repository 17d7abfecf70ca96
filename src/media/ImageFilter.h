// Image filters: one class per filter, a registry of prototypes, and the
// `filter` element of the project file.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "options/OptionTable.h"
#include "options/Registry.h"

namespace quillet {

class Bitmap;
class XmlNode;
class XmlWriter;

class ImageFilter {
public:
    virtual ~ImageFilter() = default;
    const std::string& name() const { return name_; }
    virtual std::unique_ptr<ImageFilter> Clone() const = 0;
    // Changes the 24-bit bitmap in place; true on success.
    virtual bool Apply(Bitmap& bitmap) const = 0;
    // The options: their table drives reading, writing, copying, the panel
    // and the command line.
    const OptionSet& options() const { return options_; }
    OptionTable Options() const { return options_.table(); }
    double OptionValue(size_t index) const { return options_.Value(index); }
    // The panel's "apply": stores the value (made valid for the option) and
    // returns true when it differs from what was there.
    bool SetOptionValue(size_t index, double value) { return options_.SetValue(index, value); }
    void ReadOptions(const XmlNode& element) { options_.Read(element); }
    void WriteOptions(XmlWriter& writer) const { options_.Write(writer); }

protected:
    explicit ImageFilter(std::string name, OptionTable options = {}) : name_(std::move(name)), options_(options) {}
    double value(size_t index) const { return options_.Value(index); }
    int intValue(size_t index) const { return options_.Int(index); }

private:
    std::string name_;
    OptionSet options_;
};

// One prototype of each filter, in panel order (by display name); names
// compare exactly.
class ImageFilterRegistry : public Registry<ImageFilter> {
public:
    static const ImageFilterRegistry& instance();
    std::unique_ptr<ImageFilter> Create(const std::string& name) const;  // null when unknown

private:
    ImageFilterRegistry();
};

// `<filter name="..." attrs... />` on its own line.
void WriteFilterElement(XmlWriter& writer, const ImageFilter& filter);
// Builds a filter from a `filter` element; null when the name is unknown.
std::unique_ptr<ImageFilter> ReadFilterElement(const XmlNode& element);

}  // namespace quillet
