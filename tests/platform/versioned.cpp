// Nothing but a resource.
