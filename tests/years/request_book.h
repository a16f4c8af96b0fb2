#pragma once

#include "core/link/routes.h"
#include "core/protocol/frame_image.h"
#include "core/protocol/independent_encoder.h"
#include "core/protocol/mixed_requests.h"
#include "years/findings.h"
#include "years/random.h"
#include "years/witness.h"

#include <string>
#include <vector>

namespace varda::years {

/// A request as its user thinks of it: the fields of a page.
struct DrawnRequest {
    Mode mode = Mode::WordRead;
    test::Station destination;
    test::Station source;
    std::string kind;
    int number = 0;
    int bit = 0;
    int count = 1;                        ///< of single reads
    std::vector<int> values;              ///< of single writes
    std::vector<test::DrawnPoint> points; ///< of mixed requests
    std::vector<std::string> lines;       ///< the same, as the page lists them
};

/// @param isSmall its answer takes less than a burst's wait on any line
DrawnRequest drawRequest(Random& random, Mode mode, bool isSmall);

/// A frame as the core makes it.
struct MadeFrame {
    Bytes bytes;
    std::string text;
    int answerLength = 0;
};

/// The frame images of a program, and beside them a second make of every frame.
class FrameMaker {
public:
    explicit FrameMaker(Findings& findings) : findings_(findings) { images_.write.reset(3, 1023); }

    /// Types the request into the fields of its page.
    void enter(const DrawnRequest& request);
    /// Completes the frame of the page, as each send does.
    const MadeFrame& make();
    /// What it has to be.
    const ShownFrame& expected() const { return expected_; }

private:
    void enterRead();
    void enterWrite();
    void makeMixed();
    void compare();
    FrameImage& image() { return images_.of(static_cast<std::uint8_t>(request_.mode)); }
    test::Encoded encoded();
    int expectedAnswerLength() const;

    Findings& findings_;
    FrameImages images_;
    test::MixedEncoder mixedReads_{false};
    test::MixedEncoder mixedWrites_{true};
    DrawnRequest request_;
    MadeFrame made_;
    ShownFrame expected_;
    std::string expectedText_;
};

} // namespace varda::years
