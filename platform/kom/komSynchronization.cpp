#include "platform/kom/komSynchronization.h"

komRunnableInterface::~komRunnableInterface() = default;
komLockInterface::~komLockInterface() = default;
komConditionVariableInterface::~komConditionVariableInterface() = default;
komThreadSpawnerInterface::~komThreadSpawnerInterface() = default;
komSynchronizationFactoryInterface::~komSynchronizationFactoryInterface() = default;
