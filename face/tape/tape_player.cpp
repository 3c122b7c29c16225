#include "face/tape/tape_player.h"

#include <sys/stat.h>

#include <algorithm>
#include <functional>
#include <map>
#include <tuple>

#include "face/tape/line_diff.h"
#include "face/tape/normal_form.h"

namespace scriptwells {

namespace {

constexpr std::size_t kMostCompared = 1000;  // requests of the tape, for the nearest one
constexpr std::size_t kMostLines = 6;        // of a difference

std::size_t HashOf(const Lines& lines) {
  std::string joined;
  for (const std::string& line : lines) joined += line + "\n";
  return std::hash<std::string>()(joined);
}

// A file as it is now: one that was written again is another tape.
using Identity = std::tuple<dev_t, ino_t, off_t, time_t, long>;

Identity IdentityOf(const std::string& path) {
  struct stat facts = {};
  if (::stat(path.c_str(), &facts) != 0) return {};
  return {facts.st_dev, facts.st_ino, facts.st_size, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec};
}

}  // namespace

TapeSeat::TapeSeat(const std::string& path) : player_(TapePlayer::Of(path)), track_(TapePlayer::kNone) {}

TapeSeat::~TapeSeat() {
  player_->Leave(*this);
}

const TapeEntry* TapeSeat::PlayBreak() {
  return player_->PlayBreak(*this);
}

const TapeEntry& TapeSeat::Play(const TapeEntry& request) {
  return player_->Play(*this, request);
}

// They stay until the process ends: which sessions were played must be known to the next one.
std::shared_ptr<TapePlayer> TapePlayer::Of(const std::string& path) {
  static std::mutex mutex;
  static std::map<std::string, std::pair<Identity, std::shared_ptr<TapePlayer>>> players;
  const std::lock_guard<std::mutex> lock(mutex);
  const Identity identity = IdentityOf(path);
  auto& [known, player] = players[path];
  if (player == nullptr || known != identity) {
    player = std::make_shared<TapePlayer>(path, TapeFileText(path));
    known = identity;
  }
  return player;
}

TapePlayer::TapePlayer(const std::string& path, std::string_view text)
    : path_(path), entries_(ReadTape(path, text)) {
  for (const TapeEntry& entry : entries_)
    TrackOf(entry.session)
        .entries.push_back({&entry, HashOf(NormalRequest(entry)), HashOf(NormalAnswer(entry))});
}

TapePlayer::Track& TapePlayer::TrackOf(std::size_t session) {
  const auto found = std::find_if(tracks_.rbegin(), tracks_.rend(),
                                  [session](const Track& track) { return track.session == session; });
  if (found != tracks_.rend()) return *found;
  tracks_.push_back({session});
  return tracks_.back();
}

void TapePlayer::Leave(TapeSeat& seat) noexcept {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (seat.track_ != kNone) tracks_[seat.track_].seat = nullptr;
}

void TapePlayer::Sit(TapeSeat& seat, std::size_t track) noexcept {
  TapeSeat* const other = tracks_[track].seat;
  if (seat.track_ != kNone) {
    tracks_[seat.track_].seat = other;
    tracks_[seat.track_].used = other != nullptr && other->next_ > 0;
  }
  if (other != nullptr) other->track_ = seat.track_;
  seat.track_ = track;
  tracks_[track].seat = &seat;
}

// The first that none has had, else the first that none has now.
void TapePlayer::SitDown(TapeSeat& seat) {
  std::size_t free = kNone;
  for (std::size_t i = tracks_.size(); i-- > 0;) {
    if (tracks_[i].seat != nullptr) continue;
    if (free == kNone || !tracks_[i].used || tracks_[free].used) free = i;
  }
  if (free == kNone) throw Error(Phase::kLocalFile, "the tape " + path_ + " has no session left to play");
  Sit(seat, free);
}

const TapeEntry* TapePlayer::PlayBreak(TapeSeat& seat) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (seat.track_ == kNone) SitDown(seat);
  const std::vector<Played>& entries = tracks_[seat.track_].entries;
  if (seat.next_ >= entries.size() || entries[seat.next_].entry->HasRequest()) return nullptr;
  tracks_[seat.track_].used = true;
  return entries[seat.next_++].entry;
}

bool TapePlayer::BeganAlike(std::size_t one, std::size_t other, std::size_t entries) const {
  const std::vector<Played>& first = tracks_[one].entries;
  const std::vector<Played>& second = tracks_[other].entries;
  if (std::min(first.size(), second.size()) < entries) return false;
  return std::equal(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(entries), second.begin(),
                    [](const Played& a, const Played& b) {
                      return a.entry->purpose == b.entry->purpose && a.request == b.request &&
                             a.answer == b.answer;
                    });
}

bool TapePlayer::MayTake(const TapeSeat& seat, std::size_t track, const Played& request) const {
  const Track& wanted = tracks_[track];
  if (wanted.entries.size() <= seat.next_) return false;
  const Played& entry = wanted.entries[seat.next_];
  if (entry.entry->purpose != request.entry->purpose || entry.request != request.request) return false;
  if (track == seat.track_) return true;
  const std::size_t others = wanted.seat == nullptr ? 0 : wanted.seat->next_;
  return BeganAlike(seat.track_, track, std::max(seat.next_, others));
}

// The own one, then one that none has had, then one of another session, then one that was played.
std::size_t TapePlayer::Find(const TapeSeat& seat, const Played& request) const {
  if (MayTake(seat, seat.track_, request)) return seat.track_;
  const auto rank = [this](std::size_t track) {
    if (tracks_[track].seat != nullptr) return 1;
    return tracks_[track].used ? 2 : 0;
  };
  std::size_t found = kNone;
  for (std::size_t i = tracks_.size(); i-- > 0;)
    if (MayTake(seat, i, request) && (found == kNone || rank(i) <= rank(found))) found = i;
  return found;
}

// A session may be closed before it has asked for everything, such as after a failure.
void TapePlayer::SkipToClose(TapeSeat& seat, const Played& request) const noexcept {
  if (request.entry->purpose != Purpose::kCloseSession) return;
  const std::vector<Played>& own = tracks_[seat.track_].entries;
  for (std::size_t i = seat.next_; i < own.size(); ++i)
    if (own[i].entry->purpose == Purpose::kCloseSession && own[i].request == request.request) seat.next_ = i;
}

const TapeEntry& TapePlayer::Play(TapeSeat& seat, const TapeEntry& request) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (seat.track_ == kNone) SitDown(seat);
  const Played wanted{&request, HashOf(NormalRequest(request)), 0};
  SkipToClose(seat, wanted);
  const std::size_t found = Find(seat, wanted);
  if (found == kNone) Refuse(seat, wanted);
  if (found != seat.track_) Sit(seat, found);
  tracks_[found].used = true;
  return *tracks_[found].entries[seat.next_++].entry;
}

// The request that comes next counts as the nearest one among equals.
void TapePlayer::Refuse(const TapeSeat& seat, const Played& request) const {
  const Lines sent = NormalRequest(*request.entry);
  const std::vector<Played>& own = tracks_[seat.track_].entries;
  const TapeEntry* nearest = seat.next_ < own.size() ? own[seat.next_].entry : nullptr;
  std::size_t least = nearest == nullptr ? kNone : Distance(NormalRequest(*nearest), sent);
  std::size_t compared = 0;
  for (const TapeEntry& entry : entries_) {
    if (!entry.HasRequest() || entry.purpose != request.entry->purpose || ++compared > kMostCompared)
      continue;
    const std::size_t distance = Distance(NormalRequest(entry), sent);
    if (distance >= least) continue;
    least = distance;
    nearest = &entry;
  }
  std::string message =
      std::string("the request (") + ToString(request.entry->purpose) + ") is not on the tape " + path_;
  if (seat.next_ >= own.size()) message += ", where this session has ended";
  if (nearest == nullptr) throw Error(Phase::kLocalFile, message);
  const std::string line = std::to_string(nearest->line);
  if (least == 0) throw Error(Phase::kLocalFile, message + " at this place; one like it is on line " + line);
  throw Error(Phase::kLocalFile, message + "; the nearest one, on line " + line + ", differs:" +
                                     ShortDiff(DiffOf(NormalRequest(*nearest), sent), kMostLines));
}

}  // namespace scriptwells
