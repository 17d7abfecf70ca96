// Image filters: one class per filter, a registry of prototypes, and the
// `filter` element of the project file.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace quillet {

class Bitmap;
class XmlNode;
class XmlWriter;

// One option of a filter as the desktop panel shows it (label, control, items).
struct FilterOption {
    enum class Kind { List, Integer, Real } kind = Kind::Integer;
    std::string label;               // "Type:", "Threshold:"...
    int controlId = 1001;            // the value control
    std::vector<std::string> items;  // for lists, in index order
    double defaultValue = 0;
    // Additions beyond the panel's own description:
    int labelId = 1000;              // the static label's control id
    std::string attribute;           // XML attribute; empty when the value is not saved
    double minValue = 0, maxValue = 0;  // accepted range (list: 0..items-1)
};

class ImageFilter {
public:
    virtual ~ImageFilter() = default;
    const std::string& name() const { return name_; }
    virtual std::unique_ptr<ImageFilter> Clone() const = 0;
    // Changes the 24-bit bitmap in place; true on success.
    virtual bool Apply(Bitmap& bitmap) const = 0;
    // Reads/writes the class's own attributes (those that are saved).
    virtual void ReadOptions(const XmlNode& element) {}
    virtual void WriteOptions(XmlWriter& writer) const {}
    // The panel's description of the options; empty for filters without any.
    virtual std::vector<FilterOption> Options() const { return {}; }
    // Get/set an option by index (the order of Options()); for the panel and the command line.
    virtual double OptionValue(size_t index) const { return 0; }
    virtual void SetOptionValue(size_t index, double value) {}
    // The panel's "apply": stores the value (clamped to the option's range)
    // and returns true when it differs from what was there.
    bool ChangeOptionValue(size_t index, double value);

protected:
    explicit ImageFilter(std::string name) : name_(std::move(name)) {}

private:
    std::string name_;
};

class ImageFilterRegistry {
public:
    // The registry filled with one prototype of each of the filters, in panel order.
    static const ImageFilterRegistry& instance();
    size_t count() const { return prototypes_.size(); }
    const ImageFilter* at(size_t index) const;
    const ImageFilter* find(const std::string& name) const;  // exact name
    std::unique_ptr<ImageFilter> create(const std::string& name) const;  // null when unknown

private:
    ImageFilterRegistry();
    std::vector<std::unique_ptr<ImageFilter>> prototypes_;
};

// `<filter name="..." attrs... />` on its own line.
void WriteFilterElement(XmlWriter& writer, const ImageFilter& filter);
// Builds a filter from a `filter` element; null when the name is unknown.
std::unique_ptr<ImageFilter> ReadFilterElement(const XmlNode& element);

}  // namespace quillet
