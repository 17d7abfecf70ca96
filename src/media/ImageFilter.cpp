#include "media/ImageFilter.h"

#include "media/filters/FilterBase.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

namespace quillet {

ImageFilterRegistry::ImageFilterRegistry() {
    using namespace filters;
    // Panel order: by display name.
    Add(MakeAddNoise());
    Add(MakeBlackWhite());
    Add(MakeBlur());
    Add(MakeBrightnessContrast());
    Add(MakeDespeckle());
    Add(MakeEdge());
    Add(MakeEmboss());
    Add(MakeGaussianBlur());
    Add(MakeGrayscale());
    Add(MakeImplode());
    Add(MakeMedian());
    Add(MakeMotionBlur());
    Add(MakeOilPaint());
    Add(MakeRaiseBorders());
    Add(MakeReduceNoise());
    Add(MakeSepia());
    Add(MakeShade());
    Add(MakeSharpen());
    Add(MakeSolarize());
    Add(MakeSwirl());
}

const ImageFilterRegistry& ImageFilterRegistry::instance() {
    static const ImageFilterRegistry registry;
    return registry;
}

std::unique_ptr<ImageFilter> ImageFilterRegistry::Create(const std::string& name) const {
    const ImageFilter* p = Find(name);
    return p ? p->Clone() : nullptr;
}

void WriteFilterElement(XmlWriter& writer, const ImageFilter& filter) {
    writer.write("<filter name=\"");
    writer.writeEscaped(filter.name());
    writer.write("\"");
    filter.WriteOptions(writer);
    writer.write(" />\n");
}

std::unique_ptr<ImageFilter> ReadFilterElement(const XmlNode& element) {
    std::string name;
    if (!element || !element.readString("name", name)) return nullptr;
    auto filter = ImageFilterRegistry::instance().Create(name);
    if (filter) filter->ReadOptions(element);
    return filter;
}

}  // namespace quillet
