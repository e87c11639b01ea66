// What a node emits.
#include "node.h"

void Node::emitAll()
{
    emit fired();
    emit levelChanged(-3);
    emit over(4);
    emit over("text");
    emit counted(4000000000u);
    emit measured(0.25);
    emit scaled(0.5f);
    emit switched(true);
    emit named("name");
    emit related(this);
    emit valued(QVariant(QVariantList{1, "two"}));
    emit listed({"a", "b"});
    emit changedMode(SecondMode);
    emit mysterious(nullptr);
}
