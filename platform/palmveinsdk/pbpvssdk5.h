#ifndef PBPVSSDK5_H
#define PBPVSSDK5_H

#include "palmveinsdk_export.h"

/**
 * The palm-vein scanner SDK, as far as the dialogs need it: how much card
 * memory one template takes, to tell whether a worker's templates fit.
 */
class PALMVEINSDK_EXPORT PBPVSSDK5
{
public:
    PBPVSSDK5() = delete;

    // Bytes of one palm-vein template as the SDK packs it for a card.
    static int packedTemplateSize();
};

#endif
