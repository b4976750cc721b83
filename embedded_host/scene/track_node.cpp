#include "embedded_host/scene/track_node.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

#include "embedded_host/scene/scene_dump.h"
#include "embedded_host/scene/slot_pool.h"

namespace tvr::plr::embedded {

namespace {
SlotPool& keyPool() {
  static SlotPool* pool = new SlotPool(sizeof(KeyImpl), 1024);
  return *pool;
}
}  // namespace

void* KeyImpl::operator new(std::size_t size) {
  return size == sizeof(KeyImpl) ? keyPool().allocate() : ::operator new(size);
}

void KeyImpl::operator delete(void* p, std::size_t size) {
  if (size == sizeof(KeyImpl))
    keyPool().release(p);
  else
    ::operator delete(p);
}

std::uint64_t KeyImpl::newId() {
  static std::uint64_t last = 0;
  return ++last;
}

void KeyImpl::SetTime(CCurve*, const BaseTime& t) {
  time = t;
  if (curve) curve->resort();
}

CKey* CurveImpl::GetKey(LONG index) {
  return index >= 0 && size_t(index) < keys.size() ? keys[size_t(index)].get() : nullptr;
}

namespace {

// Whole numbers below 2^26: their cross products (how times compare) are exact in a double.
bool plainTime(const BaseTime& t) {
  constexpr double kLimit = 67108864.0;
  const double n = t.GetNumerator(), d = t.GetDenominator();
  return n >= -kLimit && n <= kLimit && d > 0 && d <= kLimit && double(std::int32_t(n)) == n &&
         double(std::int32_t(d)) == d;
}

}  // namespace

CKey* CurveImpl::AddKey(const BaseTime& time, LONG* nidx) {
  // Where a scan from the front stops: the first key not before time.
  size_t i = 0;
  const bool plain = plainTime(time);
  if (ordered_ && plain) {
    // Recording moves forward: a key after the last one goes to the end without a search.
    if (keys.empty() || keys.back()->time < time)
      i = keys.size();
    else
      i = size_t(std::lower_bound(keys.begin(), keys.end(), time,
                                  [](const std::unique_ptr<KeyImpl>& k, const BaseTime& t) { return k->time < t; }) -
                 keys.begin());
  } else {
    while (i < keys.size() && keys[i]->time < time) ++i;
  }
  if (i < keys.size() && keys[i]->time == time) {
    if (nidx) *nidx = LONG(i);
    return keys[i].get();
  }
  auto key = std::make_unique<KeyImpl>();
  key->time = time;
  key->value = valueAt(time.Get());
  key->curve = this;
  KeyImpl* raw = key.get();
  if (keys.capacity() == 0) keys.reserve(8);
  keys.insert(keys.begin() + std::ptrdiff_t(i), std::move(key));
  if (!plain) ordered_ = false;
  if (nidx) *nidx = LONG(i);
  return raw;
}

CKey* CurveImpl::FindKey(const BaseTime& time, LONG* idx, LONG match) {
  long found = -1;
  for (size_t i = 0; i < keys.size(); ++i) {
    const BaseTime& k = keys[i]->time;
    if (k == time) {
      found = long(i);
      break;
    }
    if (match == FINDANIM_LEFT && k < time) found = long(i);
    if (match == FINDANIM_RIGHT && k > time) {
      found = long(i);
      break;
    }
  }
  if (found < 0) return nullptr;
  if (idx) *idx = LONG(found);
  return keys[size_t(found)].get();
}

Bool CurveImpl::DelKey(LONG index) {
  if (index < 0 || size_t(index) >= keys.size()) return false;
  keys.erase(keys.begin() + index);
  return true;
}

CTrack* CurveImpl::GetTrack() { return track ? static_cast<CTrack*>(track->iface()) : nullptr; }

void CurveImpl::resort() {
  std::stable_sort(keys.begin(), keys.end(), [](const auto& a, const auto& b) { return a->time < b->time; });
  checkOrder();
}

void CurveImpl::checkOrder() {
  ordered_ = true;
  for (size_t i = 0; i < keys.size() && ordered_; ++i)
    ordered_ = plainTime(keys[i]->time) && (i == 0 || !(keys[i]->time < keys[i - 1]->time));
}

// Slope towards the neighbours; flat at either end.
static double tangentAt(const std::vector<std::unique_ptr<KeyImpl>>& keys, size_t i) {
  if (i == 0 || i + 1 >= keys.size()) return 0.0;
  const double dt = keys[i + 1]->time.Get() - keys[i - 1]->time.Get();
  return dt > 0 ? (double(keys[i + 1]->value) - double(keys[i - 1]->value)) / dt : 0.0;
}

Real CurveImpl::valueAt(double t) const {
  if (keys.empty()) return 0;
  if (t <= keys.front()->time.Get()) return keys.front()->value;
  if (t >= keys.back()->time.Get()) return keys.back()->value;
  size_t k = 0;
  if (ordered_ && t == t) {
    // Seconds never decrease along ordered keys: the last key at or before t, found by halves.
    auto after = std::upper_bound(keys.begin() + 1, keys.end(), t,
                                  [](double s, const std::unique_ptr<KeyImpl>& key) { return s < key->time.Get(); });
    k = size_t(after - keys.begin()) - 1;
  } else {
    while (k + 1 < keys.size() && keys[k + 1]->time.Get() <= t) ++k;
  }
  const KeyImpl& a = *keys[k];
  const KeyImpl& b = *keys[k + 1];
  const double t0 = a.time.Get(), t1 = b.time.Get();
  const double h = t1 - t0;
  if (a.interpolation == CINTERPOLATION_STEP || h <= 0) return a.value;
  const double s = (t - t0) / h;
  if (a.interpolation == CINTERPOLATION_LINEAR) return Real(a.value + (double(b.value) - a.value) * s);
  const double m0 = tangentAt(keys, k), m1 = tangentAt(keys, k + 1);
  const double s2 = s * s, s3 = s2 * s;
  const double h00 = 2 * s3 - 3 * s2 + 1, h10 = s3 - 2 * s2 + s, h01 = -2 * s3 + 3 * s2, h11 = s3 - s2;
  return Real(h00 * a.value + h10 * h * m0 + h01 * b.value + h11 * h * m1);
}

Real CurveImpl::valueAt(const BaseTime& time, LONG fps) const {
  if (fps < 1) return valueAt(time.Get());
  // The start of the frame: frame / fps seconds, both whole numbers.
  return valueAt(double(time.GetFrame(fps)) / double(fps));
}

void CurveImpl::copyFrom(const CurveImpl& src, bool keepIds) {
  keys.clear();
  for (const auto& k : src.keys) {
    auto key = std::make_unique<KeyImpl>();
    if (keepIds) key->id = k->id;
    key->time = k->time;
    key->value = k->value;
    key->interpolation = k->interpolation;
    key->curve = this;
    keys.push_back(std::move(key));
  }
  ordered_ = src.ordered_;
}

void CurveImpl::exchangeKeys(CurveImpl& other) {
  std::vector<std::uint64_t> mineOrder, theirsOrder;
  std::unordered_map<std::uint64_t, std::unique_ptr<KeyImpl>> mine, theirs;
  for (auto& k : keys) mineOrder.push_back(k->id), mine[k->id] = std::move(k);
  for (auto& k : other.keys) theirsOrder.push_back(k->id), theirs[k->id] = std::move(k);
  keys.clear();
  other.keys.clear();
  for (auto& e : mine) {
    auto it = theirs.find(e.first);
    if (it == theirs.end()) continue;
    std::swap(e.second->time, it->second->time);
    std::swap(e.second->value, it->second->value);
    std::swap(e.second->interpolation, it->second->interpolation);
  }
  // Here: the other side's order, by the keys that live here wherever they exist. There: the former
  // order here, by the keys this side did not keep.
  auto take = [](auto& prefer, auto& fallback, std::uint64_t id) {
    auto it = prefer.find(id);
    return std::move(it != prefer.end() ? it->second : fallback.at(id));
  };
  for (std::uint64_t id : theirsOrder) keys.push_back(take(mine, theirs, id));
  for (std::uint64_t id : mineOrder) other.keys.push_back(take(theirs, mine, id));
  for (auto& k : keys) k->curve = this;
  for (auto& k : other.keys) k->curve = &other;
  checkOrder();
  other.checkOrder();
}

void TrackNode::copyOwnFrom(const HostNode& src) {
  HostNode::copyOwnFrom(src);
  if (src.kind != NodeKind::Track) return;
  const auto& t = static_cast<const TrackNode&>(src);
  descId = t.descId;
  // A copy under the same identity (an undo copy) keeps its keys' identities too.
  curve.copyFrom(t.curve, marker == src.marker);
}

void TrackNode::swapOwnWith(HostNode& other) {
  HostNode::swapOwnWith(other);
  if (other.kind != NodeKind::Track) return;
  auto& t = static_cast<TrackNode&>(other);
  std::swap(descId, t.descId);
  curve.exchangeKeys(t.curve);
}

void TrackNode::dumpOwn(DumpOut& out) const {
  HostNode::dumpOwn(out);
  out.key("id");
  for (LONG i = 0; i < descId.GetDepth(); ++i)
    out << (i ? "." : "") << descId[i].id << ':' << descId[i].dtype << ':' << descId[i].creator;
  out.key("keys") << '[';
  for (size_t i = 0; i < curve.keys.size(); ++i) {
    const KeyImpl& k = *curve.keys[i];
    (i ? out << ' ' : out).time(k.time) << '=';
    out.real(k.value) << ':' << k.interpolation;
  }
  out << ']';
}

HostNode* TrackNode::makeBlank() const { return makeTrack(descId); }

TrackImpl* makeTrack(const DescID& id) {
  TrackImpl* t = createNode<TrackImpl>(CTbase);
  t->descId = id;
  return t;
}

}  // namespace tvr::plr::embedded
