#include "pbpvssdk5.h"

namespace {

// The SDK packs every template to one fixed size, whatever the hand gave,
// so that a card's room can be planned before anyone is scanned. 3 KB holds
// the compressed vein feature data of one enrolment (several captures) with
// its header; one template fits a Classic 4K or a DESFire 4K card, two fit
// a DESFire 8K, and none fits the 1K and 2K cards, as with the real scanner.
constexpr int PackedTemplateSize = 3072;

} // namespace

int PBPVSSDK5::packedTemplateSize()
{
    return PackedTemplateSize;
}
