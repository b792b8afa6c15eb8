#pragma once

/**
 * Makes the icons (":/icons/"), style sheets and splash picture (":/misc/") and help texts (":/help/") known
 * to Qt. The linker drops the resource file of a static library unless this is called; call it before the
 * first resource is read. A second call does nothing.
 */
void initResources();
