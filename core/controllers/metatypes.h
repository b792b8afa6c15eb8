#pragma once

/** Makes the types that cross threads or stand in settings known to the toolkit. Call it once, at the start.
 */
void registerMetaTypes();
