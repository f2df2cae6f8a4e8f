#include "designer/unsavedDesign.h"

#include <utility>

namespace zint {

void UnsavedDesign::begin(DesignContent content)
{
    kept_.leave();
    asSaved_ = std::move(content);
}

void UnsavedDesign::saved(DesignContent content)
{
    asSaved_ = std::move(content);
    kept_.forget(); // here, for saving may have changed nothing that could be followed
}

bool UnsavedDesign::isModified(const DesignContent& content) const
{
    if (!asSaved_ || content == asSaved_)
        return !asSaved_;
    DesignContent committed = *asSaved_;
    std::erase_if(committed.grid.rows, [](const GridRow& row) { return !row.isEnabled(); });
    return content != committed;
}

void UnsavedDesign::follow(const DesignContent& content, const Design& design)
{
    if (content == lastFollowed_)
        return;
    lastFollowed_ = content;
    if (isModified(content))
        kept_.keep(content.grid, design);
    else
        kept_.forget();
}

} // namespace zint
