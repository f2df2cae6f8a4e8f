#include "designer/unsavedDesign.h"

#include <utility>

namespace zint {

void UnsavedDesign::begin(Design draft)
{
    kept_.leave();
    asSaved_ = std::move(draft);
}

void UnsavedDesign::saved(Design draft)
{
    asSaved_ = std::move(draft);
    kept_.forget(); // here, for saving may have changed nothing that could be followed
}

bool UnsavedDesign::isModified(const Design& draft) const
{
    if (!asSaved_ || draft == asSaved_)
        return !asSaved_;
    Design committed = *asSaved_;
    dropUnpolled(committed);
    return draft != committed;
}

void UnsavedDesign::follow(const Design& draft)
{
    if (draft == lastFollowed_)
        return;
    lastFollowed_ = draft;
    if (isModified(draft))
        kept_.keep(draft);
    else
        kept_.forget();
}

} // namespace zint
