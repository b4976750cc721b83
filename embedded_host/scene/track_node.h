#pragma once
// Animation tracks: a track on a parameter (DescID) owns one curve of keys.
#include <cstdint>
#include <memory>
#include <vector>

#include "embedded_host/scene/node_impl.h"

namespace tvr::plr::embedded {

class CurveImpl;
class TrackNode;

class KeyImpl : public CKey {
 public:
  BaseTime GetTime() const override { return time; }
  void SetTime(CCurve* seq, const BaseTime& t) override;
  Real GetValue() const override { return value; }
  void SetValue(CCurve*, Real v) override { value = v; }
  LONG GetInterpolation() const override { return interpolation; }
  void SetInterpolation(CCurve*, LONG inter) override { interpolation = inter; }
  ~KeyImpl() override = default;
  // Keys come by the thousand while recording: they live in a pool of their own (slot_pool.h).
  static void* operator new(std::size_t size);
  static void operator delete(void* p, std::size_t size);

  BaseTime time;
  Real value = 0;
  LONG interpolation = CINTERPOLATION_SPLINE;
  CurveImpl* curve = nullptr;
  // Identity across undo: a key and its stored copy share it.
  std::uint64_t id = newId();
  static std::uint64_t newId();
};

class CurveImpl : public CCurve {
 public:
  explicit CurveImpl(TrackNode* owner) : track(owner) {}
  ~CurveImpl() override = default;

  LONG GetKeyCount() const override { return LONG(keys.size()); }
  CKey* GetKey(LONG index) override;
  CKey* AddKey(const BaseTime& time, LONG* nidx) override;
  CKey* FindKey(const BaseTime& time, LONG* idx, LONG match) override;
  Bool DelKey(LONG index) override;
  CTrack* GetTrack() override;
  Real GetValue(const BaseTime& time, LONG fps) override { return valueAt(time, fps); }

  // The curve's value at t seconds: held outside the keys, interpolated by the left key between them.
  Real valueAt(double t) const;
  // Animation is sampled on the frame grid: the value at the start of the frame time falls in
  // (GetFrame at fps). No frame rate (fps < 1): at the time itself.
  Real valueAt(const BaseTime& time, LONG fps) const;
  // Puts the keys in time order again; call it after changing keys or their times directly.
  void resort();
  // keepIds: a copy for undo, whose keys share the identities of the originals.
  void copyFrom(const CurveImpl& src, bool keepIds);
  // Trades keys with other; keys of the same identity stay here and trade contents.
  void exchangeKeys(CurveImpl& other);

  std::vector<std::unique_ptr<KeyImpl>> keys;
  TrackNode* track;

 private:
  // Whether every key time is a plain fraction (whole numbers of modest size, positive
  // denominator) and the keys are in time order. Such times compare exactly, so a search
  // by halves finds the key a scan from the front would; any other time falls back to the scan.
  void checkOrder();
  bool ordered_ = true;
};

class TrackNode : public HostNode {
 public:
  explicit TrackNode(LONG type) : HostNode(NodeKind::Track, type), curve(this) {}

  void copyOwnFrom(const HostNode& src) override;
  void swapOwnWith(HostNode& other) override;
  void dumpOwn(DumpOut& out) const override;
  HostNode* makeBlank() const override;
  const DescID* animatedId() const override { return &descId; }
  // Tracks go under anything that is asked to hold them.
  ListKind listUnder(const HostNode&) const override { return ListKind::Tracks; }
  bool isInstanceOf(LONG t) const override { return t == CTbase || HostNode::isInstanceOf(t); }
  const char* kindName() const override { return "track"; }
  BaseList2D* owner() const { return listOwner && inList == ListKind::Tracks ? listOwner->iface() : nullptr; }

  DescID descId;
  CurveImpl curve;
};

class TrackImpl : public NodeImpl<CTrack, TrackNode> {
 public:
  using NodeImpl<CTrack, TrackNode>::NodeImpl;
  DescID GetDescriptionID() const override { return descId; }
  CCurve* GetCurve(LONG type, Bool) override { return type == CCURVE_CURVE ? &curve : nullptr; }
  // The document's frame rate stands in when the caller gives none.
  Real GetValue(BaseDocument* doc, const BaseTime& time, LONG fps) override {
    return curve.valueAt(time, fps > 0 || !doc ? fps : doc->GetFps());
  }
  BaseList2D* GetObject() override { return owner(); }
};

TrackImpl* makeTrack(const DescID& id);

}  // namespace tvr::plr::embedded
