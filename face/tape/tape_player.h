// Plays a tape: hands each session of the process the entries of one session on it.
//
// A session takes the first session of the tape that none has had, then the first that none has now. When it
// asks for what its own has not there, but another one that began alike, the two are exchanged: so sessions
// may come in any order, and the requests of each stay in theirs.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "face/tape/tape.h"

namespace scriptwells {

class TapePlayer;

// The place of one session. Threads: one at a time; different ones at once.
class TapeSeat {
 public:
  // Throws Error (kLocalFile) for a file that is not a tape.
  explicit TapeSeat(const std::string& path);
  ~TapeSeat();
  TapeSeat(const TapeSeat&) = delete;
  TapeSeat& operator=(const TapeSeat&) = delete;

  // The next entry, if it is one of a connection that was not made, which counts as played; else null. Throws
  // Error if the tape has no session for this one.
  const TapeEntry* PlayBreak();
  // The entry with this request, which counts as played. Throws Error (kLocalFile), with what differs from
  // the nearest request of the tape.
  const TapeEntry& Play(const TapeEntry& request);

 private:
  friend class TapePlayer;

  const std::shared_ptr<TapePlayer> player_;
  std::size_t track_;  // of the player; none at first
  std::size_t next_ = 0;
};

// One for each tape in the process. All functions may be called on any thread.
class TapePlayer {
 public:
  // The player of the file as it is now.
  static std::shared_ptr<TapePlayer> Of(const std::string& path);
  TapePlayer(const std::string& path, std::string_view text);

  const TapeEntry* PlayBreak(TapeSeat& seat);
  const TapeEntry& Play(TapeSeat& seat, const TapeEntry& request);
  void Leave(TapeSeat& seat) noexcept;

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

 private:
  struct Played {
    const TapeEntry* entry;
    std::size_t request, answer;  // hashes of their normal forms
  };
  // A session of the tape.
  struct Track {
    std::size_t session;
    std::vector<Played> entries{};
    TapeSeat* seat = nullptr;
    bool used = false;  // an entry of it was played
  };

  Track& TrackOf(std::size_t session);
  void Sit(TapeSeat& seat, std::size_t track) noexcept;
  void SitDown(TapeSeat& seat);
  bool MayTake(const TapeSeat& seat, std::size_t track, const Played& request) const;
  bool BeganAlike(std::size_t one, std::size_t other, std::size_t entries) const;
  std::size_t Find(const TapeSeat& seat, const Played& request) const;
  void SkipToClose(TapeSeat& seat, const Played& request) const noexcept;
  [[noreturn]] void Refuse(const TapeSeat& seat, const Played& request) const;

  const std::string path_;
  const std::vector<TapeEntry> entries_;
  std::vector<Track> tracks_;
  std::mutex mutex_;
};

}  // namespace scriptwells
