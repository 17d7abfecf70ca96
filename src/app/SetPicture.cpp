#include "app/SetPicture.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

namespace quillet::app {

namespace {

// Set movies are a few kilobytes; anything far larger is not one.
constexpr qint64 kMaxSetFileBytes = 8 << 20;
constexpr int kMaxPictureSide = 4096;
// Sprites and buttons nest; a movie that nests deeper (or in a circle) is cut off.
constexpr int kMaxNesting = 16;

// Multipliers and offsets per channel (r, g, b, a), in 0..1 units.
struct Tint {
    double mult[4] = {1, 1, 1, 1};
    double add[4] = {0, 0, 0, 0};

    static Tint From(const SwfColorTransformAlpha& c) {
        Tint t;
        if (c.hasMultTerms) {
            const int32_t m[4] = {c.redMult, c.greenMult, c.blueMult, c.alphaMult};
            for (int i = 0; i < 4; ++i) t.mult[i] = m[i] / 256.0;
        }
        if (c.hasAddTerms) {
            const int32_t a[4] = {c.redAdd, c.greenAdd, c.blueAdd, c.alphaAdd};
            for (int i = 0; i < 4; ++i) t.add[i] = a[i] / 255.0;
        }
        return t;
    }
    static Tint From(const SwfColorTransform& c) {
        SwfColorTransformAlpha a;
        a.hasMultTerms = c.hasMultTerms;
        a.hasAddTerms = c.hasAddTerms;
        a.redMult = c.redMult, a.greenMult = c.greenMult, a.blueMult = c.blueMult;
        a.redAdd = c.redAdd, a.greenAdd = c.greenAdd, a.blueAdd = c.blueAdd;
        return From(a);
    }
    // This tint first, then `outer` (a child's tint inside its parent's).
    Tint Then(const Tint& outer) const {
        Tint t;
        for (int i = 0; i < 4; ++i) {
            t.mult[i] = mult[i] * outer.mult[i];
            t.add[i] = add[i] * outer.mult[i] + outer.add[i];
        }
        return t;
    }
    QColor Apply(const SwfColor& c) const {
        const double v[4] = {c.r / 255.0, c.g / 255.0, c.b / 255.0, c.a / 255.0};
        double out[4];
        for (int i = 0; i < 4; ++i) out[i] = std::clamp(v[i] * mult[i] + add[i], 0.0, 1.0);
        return QColor::fromRgbF(float(out[0]), float(out[1]), float(out[2]), float(out[3]));
    }
};

QTransform ToTransform(const SwfMatrix& m) {
    const double sx = m.hasScale ? m.scaleX / 65536.0 : 1.0, sy = m.hasScale ? m.scaleY / 65536.0 : 1.0;
    const double r0 = m.hasRotate ? m.rotateSkew0 / 65536.0 : 0.0, r1 = m.hasRotate ? m.rotateSkew1 / 65536.0 : 0.0;
    // x' = sx x + r1 y + tx, y' = r0 x + sy y + ty.
    return QTransform(sx, r0, r1, sy, m.translateX, m.translateY);
}

// One edge in twips; a curve goes through `control`.
struct Edge {
    QPoint from, control, to;
    bool curved = false;
    Edge Reversed() const { return {to, control, from, curved}; }
};

void AddEdge(QPainterPath& path, const Edge& e) {
    if (e.curved) path.quadTo(e.control, e.to);
    else path.lineTo(e.to);
}

// The styles that one run of records draws with, and the edges of each style
// (a style change with new styles starts another run, drawn above it).
struct StyleRun {
    std::vector<SwfFillStyle> fills;
    std::vector<SwfLineStyle> lines;
    std::vector<std::vector<Edge>> fillEdges, lineEdges;

    StyleRun(std::vector<SwfFillStyle> f, std::vector<SwfLineStyle> l)
        : fills(std::move(f)), lines(std::move(l)), fillEdges(fills.size()), lineEdges(lines.size()) {}
};

std::vector<StyleRun> SplitIntoRuns(const SwfShapeWithStyle& shape) {
    std::vector<StyleRun> runs;
    runs.emplace_back(shape.fillStyles, shape.lineStyles);
    QPoint at;
    uint32_t fill0 = 0, fill1 = 0, line = 0;
    for (const SwfShapeRecord& r : shape.records) {
        if (r.kind == SwfShapeRecord::Kind::StyleChange) {
            if (r.hasNewStyles) {
                runs.emplace_back(r.newFillStyles, r.newLineStyles);
                fill0 = fill1 = line = 0;
            }
            if (r.hasMove) at = QPoint(r.moveX, r.moveY);
            if (r.hasFill0) fill0 = r.fill0;
            if (r.hasFill1) fill1 = r.fill1;
            if (r.hasLine) line = r.line;
            continue;
        }
        Edge e;
        e.from = at;
        if (r.kind == SwfShapeRecord::Kind::CurvedEdge) {
            e.curved = true;
            e.control = at + QPoint(r.dx, r.dy);
            e.to = e.control + QPoint(r.anchorDx, r.anchorDy);
        } else {
            e.to = at + QPoint(r.dx, r.dy);
        }
        at = e.to;
        StyleRun& run = runs.back();
        // Fill 1 lies on the edge's right (y down), fill 0 on its left: turned
        // round, a fill-0 edge runs the same way as the fill-1 edges beside it,
        // so each fill's edges join head to tail. An edge with the same fill
        // on both sides bounds nothing.
        if (fill0 != fill1) {
            if (fill0 >= 1 && fill0 <= run.fills.size()) run.fillEdges[fill0 - 1].push_back(e.Reversed());
            if (fill1 >= 1 && fill1 <= run.fills.size()) run.fillEdges[fill1 - 1].push_back(e);
        }
        if (line >= 1 && line <= run.lines.size()) run.lineEdges[line - 1].push_back(e);
    }
    return runs;
}

// Joins a fill's edges into closed outlines, head to tail.
QPainterPath FillOutline(const std::vector<Edge>& edges) {
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    std::map<std::pair<int, int>, std::vector<size_t>> byStart;
    for (size_t i = edges.size(); i-- > 0;) byStart[{edges[i].from.x(), edges[i].from.y()}].push_back(i);
    std::vector<bool> used(edges.size(), false);
    for (size_t first = 0; first < edges.size(); ++first) {
        if (used[first]) continue;
        path.moveTo(edges[first].from);
        size_t at = first;
        while (true) {
            used[at] = true;
            AddEdge(path, edges[at]);
            if (edges[at].to == edges[first].from) break;
            auto next = byStart.find({edges[at].to.x(), edges[at].to.y()});
            if (next == byStart.end()) break;
            std::vector<size_t>& candidates = next->second;
            while (!candidates.empty() && used[candidates.back()]) candidates.pop_back();
            if (candidates.empty()) break;
            at = candidates.back();
        }
        path.closeSubpath();
    }
    return path;
}

// Strokes follow the edges in their order.
QPainterPath LinePath(const std::vector<Edge>& edges) {
    QPainterPath path;
    for (size_t i = 0; i < edges.size(); ++i) {
        if (i == 0 || edges[i].from != edges[i - 1].to) path.moveTo(edges[i].from);
        AddEdge(path, edges[i]);
    }
    return path;
}

SwfColor FillColour(const SwfFillStyle& style) {
    if (style.type == SwfFillStyle::Solid) return style.color;
    if (style.IsGradient() && !style.gradient.records.empty()) {
        int sum[4] = {};
        for (const SwfGradientRecord& r : style.gradient.records) {
            sum[0] += r.color.r, sum[1] += r.color.g, sum[2] += r.color.b, sum[3] += r.color.a;
        }
        const int n = int(style.gradient.records.size());
        return SwfColor(uint8_t(sum[0] / n), uint8_t(sum[1] / n), uint8_t(sum[2] / n), uint8_t(sum[3] / n));
    }
    return SwfColor(128, 128, 128);  // bitmaps and the like
}

class FrameDrawer {
public:
    FrameDrawer(QPainter& painter, const std::vector<std::unique_ptr<SwfTag>>& tags) : p_(painter) {
        for (const auto& tag : tags)
            if (tag->HasId()) characters_.insert(tag->GetId(), tag.get());
    }

    // The objects a timeline shows on its first frame, by depth.
    void DrawTimeline(const std::vector<std::unique_ptr<SwfTag>>& timeline, const QTransform& t, const Tint& tint,
                      int nesting) {
        struct Placed {
            uint16_t id = 0;
            SwfMatrix matrix;
            Tint tint;
            bool mask = false;
        };
        std::map<uint16_t, Placed> list;
        for (const auto& tag : timeline) {
            if (tag->Code() == SwfTagCode::ShowFrame) break;
            if (const auto* place = dynamic_cast<const PlaceObjectTag*>(tag.get())) {
                Placed& at = list[place->depth];
                at = {place->characterId, place->matrix, {}, false};
                if (place->colorTransform) at.tint = Tint::From(*place->colorTransform);
            } else if (const auto* place2 = dynamic_cast<const PlaceObject2Tag*>(tag.get())) {
                auto found = list.find(place2->depth);
                if (!place2->move || found == list.end()) {
                    if (!place2->characterId) continue;  // changes nothing that is there
                    found = list.insert_or_assign(place2->depth, Placed{}).first;
                }
                Placed& at = found->second;
                if (place2->characterId) at.id = *place2->characterId;
                if (place2->matrix) at.matrix = *place2->matrix;
                if (place2->colorTransform) at.tint = Tint::From(*place2->colorTransform);
                if (place2->clipDepth) at.mask = true;
            } else if (const auto* remove = dynamic_cast<const RemoveObject2Tag*>(tag.get())) {
                list.erase(remove->depth);
            } else if (const auto* remove1 = dynamic_cast<const RemoveObjectTag*>(tag.get())) {
                list.erase(remove1->depth);
            }
        }
        for (const auto& [depth, placed] : list)
            if (!placed.mask) DrawCharacter(placed.id, ToTransform(placed.matrix) * t, placed.tint.Then(tint), nesting + 1);
    }

private:
    void DrawCharacter(uint16_t id, const QTransform& t, const Tint& tint, int nesting) {
        const SwfTag* tag = characters_.value(id);
        if (!tag || nesting > kMaxNesting) return;
        if (const auto* shape = dynamic_cast<const SwfDefineShapeBase*>(tag)) {
            DrawShape(shape->shape, t, tint);
        } else if (const auto* button = dynamic_cast<const DefineButton2Tag*>(tag)) {
            DrawButton(button->records, true, t, tint, nesting);
        } else if (const auto* button1 = dynamic_cast<const DefineButtonTag*>(tag)) {
            DrawButton(button1->records, false, t, tint, nesting);
        } else if (const auto* sprite = dynamic_cast<const DefineSpriteTag*>(tag)) {
            DrawTimeline(sprite->Tags(), t, tint, nesting);
        }
    }

    // A button as it rests: its up-state records by depth.
    void DrawButton(std::vector<SwfButtonRecord> records, bool withTint, const QTransform& t, const Tint& tint,
                    int nesting) {
        std::stable_sort(records.begin(), records.end(),
                         [](const SwfButtonRecord& a, const SwfButtonRecord& b) { return a.depth < b.depth; });
        for (const SwfButtonRecord& r : records) {
            if (!(r.states & SwfButtonRecord::Up)) continue;
            const Tint own = withTint ? Tint::From(r.colorTransform) : Tint();
            DrawCharacter(r.characterId, ToTransform(r.matrix) * t, own.Then(tint), nesting + 1);
        }
    }

    void DrawShape(const SwfShapeWithStyle& shape, const QTransform& t, const Tint& tint) {
        p_.setTransform(t);
        // Lines are at least one image pixel wide.
        const double scale = std::sqrt(std::abs(t.determinant()));
        const double hairline = scale > 0 ? 1.0 / scale : 20.0;
        for (const StyleRun& run : SplitIntoRuns(shape)) {
            p_.setPen(Qt::NoPen);
            for (size_t i = 0; i < run.fills.size(); ++i) {
                if (run.fillEdges[i].empty()) continue;
                p_.setBrush(tint.Apply(FillColour(run.fills[i])));
                p_.drawPath(FillOutline(run.fillEdges[i]));
            }
            p_.setBrush(Qt::NoBrush);
            for (size_t i = 0; i < run.lines.size(); ++i) {
                if (run.lineEdges[i].empty()) continue;
                QPen pen(tint.Apply(run.lines[i].color), std::max<double>(run.lines[i].width, hairline));
                pen.setCapStyle(Qt::RoundCap);
                pen.setJoinStyle(Qt::RoundJoin);
                p_.setPen(pen);
                p_.drawPath(LinePath(run.lineEdges[i]));
            }
        }
    }

    QPainter& p_;
    QHash<uint16_t, const SwfTag*> characters_;
};

}  // namespace

QImage DrawFirstFrame(const QString& path, double scale, QString* error) {
    auto fail = [&](const QString& why) {
        if (error) *error = path + ": " + why;
        return QImage();
    };
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return fail(file.errorString());
    if (file.size() > kMaxSetFileBytes) return fail(QString("%1 bytes is too large for a control set").arg(file.size()));
    const QByteArray bytes = file.readAll();
    SwfReader reader;
    if (!reader.ReadMemory(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size())))
        return fail(QString::fromStdString(reader.Error()));
    const SwfRect& frame = reader.Header().frameSize;
    const int width = int(std::ceil(frame.Width() / 20.0 * scale)), height = int(std::ceil(frame.Height() / 20.0 * scale));
    if (width <= 0 || height <= 0) return fail("the movie's stage is empty");
    if (width > kMaxPictureSide || height > kMaxPictureSide)
        return fail(QString("the movie's stage (%1 x %2 pixels) is too large to draw").arg(frame.Width() / 20).arg(frame.Height() / 20));
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QTransform stage = QTransform::fromTranslate(-frame.xMin, -frame.yMin) * QTransform::fromScale(scale / 20, scale / 20);
    FrameDrawer(painter, reader.Tags()).DrawTimeline(reader.Tags(), stage, Tint(), 0);
    return image;
}

QImage ControlSetPicture(ControlKind kind, const QString& name, QString* error) {
    const std::string folder = FindControlsFolder(kind);
    if (folder.empty()) {
        if (error) *error = kNoControlTemplates;
        return {};
    }
    const QString path = QString::fromStdString(folder) + "/" + name + ".swf";
    struct Drawn {
        QDateTime modified;
        qint64 size = -1;
        QImage image;
        QString error;
    };
    static QHash<QString, Drawn> drawn;
    const QFileInfo info(path);
    Drawn& entry = drawn[path];
    if (entry.size != info.size() || entry.modified != info.lastModified()) {
        entry = {info.lastModified(), info.size(), {}, {}};
        entry.image = DrawFirstFrame(path, 2.0, &entry.error);
    }
    if (error) *error = entry.error;
    return entry.image;
}

}  // namespace quillet::app
