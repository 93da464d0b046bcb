#include "apps/quillon/feed.h"

#include "apps/quillon/failure.h"
#include "apps/quillon/section_chain.h"
#include "apps/quillon/source.h"
#include "apps/quillon/stop.h"
#include "apps/quillon/text.h"

#include <algorithm>
#include <span>
#include <utility>

namespace quillon::app {

namespace {

// How far ahead the tables that name PIDs, and services, are sought in a file.
constexpr uint64_t kLookahead = uint64_t{64} << 20;
// What holds no packets or sections for so long has none: a device may give zeros for ever.
constexpr uint64_t kPatience = uint64_t{64} << 20;
constexpr size_t kPiece = size_t{1} << 18;

// Reads one input through.
class Feed {
 public:
  Feed(const Options& options, Console& console, Receiver& receiver, Receiver::Needs needs)
      : options_(options), console_(console), receiver_(receiver), needs_(needs), services_(options.choice) {
    how_.pids = options.choice.pids;
    // A table that is asked for by its id alone is sought on every PID.
    how_.every_pid = options.choice.pids.empty() && !options.choice.tables.empty();
    how_.repeats = options.all || needs.repeats;
    how_.standard = options.standard;
  }

  // Gives whether a section was wanted.
  bool run(const std::string& input) {
    source_ = open_source(input, options_.follow);
    input_.name = visible(name_of(input));
    input_.is_live = source_->is_live();
    read_first();
    input_.is_chain = content_of(first_) == Content::sections;
    look_ahead();
    refuse_part();
    receiver_.begin(input_);
    input_.is_chain ? run_sections() : run_packets();
    if (const std::string trouble = source_->trouble(); !trouble.empty())
      console_.message(input_.name + ": " + trouble);
    refuse_part();
    receiver_.end(input_);
    return was_wanted_ || met_packets();
  }

 private:
  using Bytes = std::span<const uint8_t>;

  // Enough to tell what the input is, and no more: what is live is waited for.
  void read_first() {
    while (content_of(first_) == Content::unknown) {
      const size_t had = first_.size();
      first_.resize(had + kPiece);
      const size_t got = source_->read(first_.data() + had, kPiece);
      first_.resize(had + got);
      if (got == 0) break;
    }
  }

  // Hands the input to `each`, in pieces, until that gives false.
  template <class Each>
  void read_pieces(Each each) {
    if (!first_.empty() && !each(Bytes(first_))) return;
    std::vector<uint8_t> piece(kPiece);
    for (;;) {
      const size_t got = source_->read(piece.data(), piece.size());
      if (got == 0 || !each(Bytes(piece).first(got))) return;
    }
  }

  // What is live ends when people want it to, a file does not.
  void refuse_part() const {
    if (is_interrupted() && !input_.is_live)
      throw Failure(input_.name + ": stopped after " + grouped(input_.bytes) + " bytes");
  }

  // On a PID that was asked for.
  bool met_packets() const {
    const auto has_any = [this](int pid) { return input_.statistics.pid(pid).packets > 0; };
    return needs_.packets && std::any_of(options_.choice.pids.begin(), options_.choice.pids.end(), has_any);
  }

  // Sections may come before the tables that name their PIDs, and services: these are found first, so that
  // none is missed. What can't go back is not waited for.
  void look_ahead() {
    SectionReader reader([this](const StreamSection& section) { services_.learn(section); }, how_);
    uint64_t looked_at = 0;
    const auto learn = [&](auto push) {
      const auto push_some = [&](Bytes piece) {
        push(piece);
        looked_at += piece.size();
        return looked_at < kLookahead;
      };
      if (source_->rewind()) {
        first_.clear();
        read_pieces(push_some);
        source_->rewind();
      } else {
        push_some(first_);
      }
    };
    if (input_.is_chain) {
      ChainReader chain;
      learn([&](Bytes piece) {
        chain.push(piece, [&](const uint8_t* s, size_t n) { reader.push_section(s, n); });
      });
    } else if (!input_.is_live) {
      PacketReader packets;
      const auto push = [&] {
        for (TsPacket packet; packets.next(packet);) reader.push(packet);
      };
      learn([&](Bytes piece) {
        packets.feed(piece.data(), piece.size());
        push();
      });
      packets.finish();
      push();
      for (int pid = 0; pid < TsPacket::pids; ++pid)
        if (reader.reads_pid(pid)) how_.pids.push_back(pid);
    }
    if (input_.is_chain || !input_.is_live) how_.standard = input_.standard = reader.standard();
  }

  void run_sections() {
    ChainReader chain;
    SectionReader reader([&](const StreamSection& section) { take(section); }, how_);
    const auto push = [&](const uint8_t* section, size_t size) { reader.push_section(section, size); };
    read_pieces([&](Bytes piece) {
      chain.push(piece, push);
      came(piece.size());
      if (chain.since_section() < kPatience) return true;
      console_.message(input_.name + ": no section in the last " + grouped(chain.since_section()) +
                       " bytes; what follows is not read");
      return false;
    });
    chain.finish(push);
    if (chain.skipped() > 0)
      console_.message(input_.name + ": skipped " + grouped(chain.skipped()) +
                       " bytes that are no whole section");
  }

  void run_packets() {
    PacketReader& packets = input_.packets;
    const SectionReader* sections = nullptr;
    SectionReader reader(
        [&](const StreamSection& section) {
          input_.standard = sections->standard();
          take(section);
        },
        how_);
    sections = &reader;
    const auto push = [&] {
      for (TsPacket packet; packets.next(packet);) {
        if (needs_.statistics) input_.statistics.push(packet);
        receiver_.packet(packet);
        reader.push(packet);
      }
    };
    read_pieces([&](Bytes piece) {
      packets.feed(piece.data(), piece.size());
      push();
      came(piece.size());
      return packets.packets() > 0 || input_.bytes < kPatience;
    });
    packets.finish();
    push();
    if (input_.bytes == 0) throw Failure(input_.name + (input_.is_live ? ": nothing came" : ": is empty"));
    if (packets.packets() == 0)
      throw Failure(input_.name + ": holds no transport packets, nor sections" +
                    (input_.bytes >= kPatience ? " in its first " + grouped(input_.bytes) + " bytes" : ""));
    if (packets.skipped() > 0)
      console_.message(input_.name + ": skipped " + grouped(packets.skipped()) +
                       " bytes that are no packets of " + std::to_string(packets.stride()) + " bytes");
  }

  void came(size_t bytes) {
    input_.bytes += bytes;
    console_.progress(input_.bytes, source_->size());
    if (input_.is_live) receiver_.pause(input_);
  }

  void take(const StreamSection& section) {
    if (needs_.statistics) input_.statistics.on_section(section);
    services_.learn(section);
    const bool is_of_choice = is_wanted(options_.choice, section);
    receiver_.learn(input_, section, is_of_choice);
    if (!is_of_choice) return;
    if (!needs_.every_service && !services_.is_wanted(section)) return;
    was_wanted_ = true;
    receiver_.section(input_, section);
  }

  const Options& options_;
  Console& console_;
  Receiver& receiver_;
  const Receiver::Needs needs_;
  std::unique_ptr<Source> source_;
  std::vector<uint8_t> first_;  // what was read to tell what the input is
  SectionReaderOptions how_;
  ServiceSections services_;
  Input input_;
  bool was_wanted_ = false;
};

}  // namespace

Exit read_inputs(const Options& options, Console& console, Receiver& receiver, Receiver::Needs needs) {
  bool was_wanted = false;
  bool failed = false;
  for (const std::string& input : options.inputs) {
    // Who interrupts is told what was not reached; who said --seconds wanted no more.
    if (is_interrupted()) {
      console.message(visible(name_of(input)) + ": not read");
      failed = true;
      continue;
    }
    if (stop_requested()) break;
    try {
      was_wanted |= Feed(options, console, receiver, needs).run(input);
    } catch (const Failure& failure) {
      console.message(failure.what());
      failed = true;
    }
  }
  if (!was_wanted && !failed && options.choice != Choice{})
    console.message("nothing matches " + text_of(options.choice));
  return failed ? exit_bad_input : exit_ok;
}

std::string place_of(const StreamSection& section) {
  const std::string number = std::to_string(section.packet + 1);
  if (section.pid < 0) return "section " + number;
  return "packet " + number + ", PID " + pid_text(section.pid);
}

}  // namespace quillon::app
