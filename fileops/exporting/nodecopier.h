#pragma once

#include <QtGlobal>

class QuietStatements;

/**
 * Copies the browsing nodes of the exported tags, with the gaps closed: a node whose parent stays behind
 * hangs on its nearest ancestor that goes over, or on the root. On the worker's connection, in the exporter's
 * transaction; its work tables are made before that and dropped after it.
 */
class NodeCopier
{
public:
    explicit NodeCopier(QuietStatements &statements) : m_statements(statements) {}

    bool prepare();
    bool run();
    void cleanUp();

private:
    bool findAncestors();

    QuietStatements &m_statements;
};
