#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <vector>

#include "hostsim/scene_picture.h"
#include "hostsim/svg_text.h"

namespace hostsim {

namespace {

constexpr double kLeft = 70.0, kRight = 20.0, kTop = 30.0, kBottom = 30.0, kGap = 24.0;

struct TrackCurve {
    std::string label;  // "position.x"
    std::vector<double> values;  // one a frame
    std::vector<std::pair<double, double>> keys;  // time, value
};

struct Panel {
    std::string group;
    std::vector<TrackCurve> tracks;
};

std::string groupOf(const DescID& id) {
    switch (id[0].id) {
    case ID_BASEOBJECT_POSITION: return "position";
    case ID_BASEOBJECT_ROTATION: return "rotation";
    case ID_BASEOBJECT_SCALE: return "scale";
    case CAMERAOBJECT_FOV:
    case CAMERAOBJECT_APERTURE: return "lens";
    default: return "other";
    }
}

std::string labelOf(const DescID& id, const std::string& group) {
    if (group == "lens") return id[0].id == CAMERAOBJECT_FOV ? "lens.fov" : "lens.aperture";
    if (group == "other") return "parameter " + std::to_string(id[0].id);
    const LONG component = id[1].id - VECTOR_X;
    static const char* const xyz[] = {"x", "y", "z"};
    static const char* const hpb[] = {"h", "p", "b"};
    if (component < 0 || component > 2) return group;
    return group + "." + (group == "rotation" ? hpb[component] : xyz[component]);
}

// Panels in a fixed order, so that two pictures of one object compare.
const std::vector<std::string> kGroupOrder = {"position", "rotation", "scale", "lens", "other"};

}  // namespace

std::string drawCurves(BaseDocument* doc, BaseObject* op, std::string& error) {
    if (!doc || !op) {
        error = "no object to draw";
        return "";
    }
    const LONG fps = std::max<LONG>(doc->GetFps(), 1);
    const LONG first = doc->GetMinTime().GetFrame(fps);
    LONG last = doc->GetMaxTime().GetFrame(fps);
    if (last <= first) last = first + fps;
    // A range longer than this is a broken document, not something to sample frame by frame.
    last = std::min<LONG>(last, first + 100000);
    const double t0 = double(first) / fps, t1 = double(last) / fps;

    std::map<std::string, Panel> panels;
    for (CTrack* track = op->GetFirstCTrack(); track; track = track->GetNext()) {
        const DescID id = track->GetDescriptionID();
        TrackCurve curve;
        const std::string group = groupOf(id);
        curve.label = labelOf(id, group);
        for (LONG f = first; f <= last; ++f)
            curve.values.push_back(track->GetValue(doc, BaseTime(f, fps), fps));
        if (CCurve* keys = track->GetCurve(CCURVE_CURVE, false)) {
            for (LONG k = 0; k < keys->GetKeyCount(); ++k) {
                CKey* key = keys->GetKey(k);
                if (key) curve.keys.emplace_back(key->GetTime().Get(), key->GetValue());
            }
        }
        Panel& panel = panels[group];
        panel.group = group;
        panel.tracks.push_back(curve);
    }
    if (panels.empty()) {
        error = op->GetName().ToStd() + " has no animation tracks";
        return "";
    }

    const double plotW = kPictureWidth - kLeft - kRight;
    const double panelH = (kPictureHeight - kTop - kBottom - kGap * double(panels.size() - 1)) / double(panels.size());
    std::ostringstream out;
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << kPictureWidth << "\" height=\"" << kPictureHeight
        << "\" viewBox=\"0 0 " << kPictureWidth << " " << kPictureHeight << "\" data-object=\""
        << svg::escape(op->GetName().ToStd()) << "\" data-from=\"" << svg::num(t0) << "\" data-to=\"" << svg::num(t1)
        << "\">\n<rect width=\"100%\" height=\"100%\" fill=\"#fbfbf8\"/>\n"
        << "<text x=\"8\" y=\"18\" font-family=\"sans-serif\" font-size=\"12\" fill=\"#666\">"
        << svg::escape(op->GetName().ToStd()) << ": " << svg::num(t0) << " s to " << svg::num(t1) << " s at " << fps
        << " frames a second</text>\n";
    static const char* const colours[] = {"#c0392b", "#27ae60", "#2f5fb3", "#8e44ad"};
    double top = kTop;
    for (const std::string& name : kGroupOrder) {
        auto it = panels.find(name);
        if (it == panels.end()) continue;
        const Panel& panel = it->second;
        double lo = 0, hi = 0;
        bool any = false;
        const auto take = [&](double v) {
            if (!std::isfinite(v)) return;
            lo = any ? std::min(lo, v) : v;
            hi = any ? std::max(hi, v) : v;
            any = true;
        };
        for (const TrackCurve& c : panel.tracks) {
            for (double v : c.values) take(v);
            for (const auto& k : c.keys) take(k.second);
        }
        if (!(hi - lo > 1e-9)) {
            lo -= 1;
            hi += 1;
        }
        const auto px = [&](double t) { return kLeft + (t - t0) / (t1 - t0) * plotW; };
        const auto py = [&](double v) { return top + panelH - (v - lo) / (hi - lo) * panelH; };
        out << "<g class=\"panel\" data-group=\"" << name << "\">\n<rect x=\"" << svg::num(kLeft) << "\" y=\""
            << svg::num(top) << "\" width=\"" << svg::num(plotW) << "\" height=\"" << svg::num(panelH)
            << "\" fill=\"none\" stroke=\"#ccc\"/>\n<text x=\"6\" y=\"" << svg::num(top + 12)
            << "\" font-family=\"sans-serif\" font-size=\"11\" fill=\"#333\">" << name << "</text>\n"
            << "<text x=\"6\" y=\"" << svg::num(top + 26) << "\" font-family=\"sans-serif\" font-size=\"9\" fill=\"#888\">"
            << svg::num(hi) << "</text>\n<text x=\"6\" y=\"" << svg::num(top + panelH)
            << "\" font-family=\"sans-serif\" font-size=\"9\" fill=\"#888\">" << svg::num(lo) << "</text>\n";
        int colour = 0;
        for (const TrackCurve& c : panel.tracks) {
            const char* stroke = colours[colour++ % 4];
            out << "<polyline class=\"track\" data-track=\"" << c.label << "\" fill=\"none\" stroke=\"" << stroke
                << "\" points=\"";
            for (std::size_t i = 0; i < c.values.size(); ++i) {
                if (i) out << ' ';
                out << svg::num(px(double(first + LONG(i)) / fps)) << ',' << svg::num(py(c.values[i]));
            }
            out << "\"/>\n";
            for (const auto& k : c.keys) {
                out << "<circle class=\"key\" data-track=\"" << c.label << "\" data-time=\"" << svg::num(k.first)
                    << "\" cx=\"" << svg::num(px(k.first)) << "\" cy=\"" << svg::num(py(k.second)) << "\" r=\"3\" fill=\""
                    << stroke << "\"/>\n";
            }
        }
        out << "</g>\n";
        top += panelH + kGap;
    }
    out << "</svg>\n";
    return out.str();
}

}  // namespace hostsim
