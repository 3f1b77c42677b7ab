'''A mock of BlueZ for tests. It extends the one of python3-dbusmock with

- interfaces that are added to objects and removed from them (AddInterface, RemoveInterface),
- properties of any name and type that change, with or without a signal,
- calls from BlueZ to a client's agent and profiles, with real sockets.

A client is named by its process id.
'''

import socket

import dbus
from dbusmock import OBJECT_MANAGER_IFACE, mockobject
from dbusmock.templates import bluez5 as base

BUS_NAME = base.BUS_NAME
MAIN_OBJ = base.MAIN_OBJ
IS_OBJECT_MANAGER = base.IS_OBJECT_MANAGER
SYSTEM_BUS = base.SYSTEM_BUS
MOCK = base.BLUEZ_MOCK_IFACE

AGENT_SIGNATURES = {
    'RequestPinCode': 'o', 'DisplayPinCode': 'os', 'RequestPasskey': 'o', 'DisplayPasskey': 'ouq',
    'RequestConfirmation': 'ou', 'RequestAuthorization': 'o', 'AuthorizeService': 'os',
    'Cancel': '', 'Release': '',
}

for name in dir(base):
    member = getattr(base, name)
    if getattr(member, '_dbus_is_method', False) and member._dbus_interface == MOCK:
        globals()[name] = member

sockets = []
answers = []


def load(mock, parameters):
    base.load(mock, parameters)


def client(connection, pid):
    bus = connection.get_object('org.freedesktop.DBus', '/org/freedesktop/DBus')
    for unique in bus.ListNames(dbus_interface='org.freedesktop.DBus'):
        if unique.startswith(':') and bus.GetConnectionUnixProcessID(
                unique, dbus_interface='org.freedesktop.DBus') == pid:
            return unique
    raise dbus.exceptions.DBusException('no client', name=MOCK + '.NoClient')


def manager_signal(name, signature, arguments):
    mockobject.objects['/'].EmitSignal(OBJECT_MANAGER_IFACE, name, signature, arguments)


@dbus.service.method(MOCK, in_signature='osa{sv}', out_signature='')
def AddInterface(self, path, interface, properties):
    if path in mockobject.objects:
        mockobject.objects[path].AddProperties(interface, properties)
    else:
        self.AddObject(path, interface, properties, [])
    manager_signal('InterfacesAdded', 'oa{sa{sv}}', [path, {interface: properties}])


@dbus.service.method(MOCK, in_signature='os', out_signature='')
def RemoveInterface(self, path, interface):
    mockobject.objects[path].props.pop(interface)
    if not mockobject.objects[path].props:
        self.RemoveObject(path)
    manager_signal('InterfacesRemoved', 'oas', [path, [interface]])


@dbus.service.method(MOCK, in_signature='osa{sv}as', out_signature='')
def ChangeProperties(self, path, interface, properties, invalidated):
    '''Changes or adds properties of any type; the mock's own method only changes known ones.'''
    mocked = mockobject.objects[path]
    mocked.props[interface].update(properties)
    mocked.EmitSignal(dbus.PROPERTIES_IFACE, 'PropertiesChanged', 'sa{sv}as',
                      [interface, properties, invalidated])


@dbus.service.method(MOCK, in_signature='ossv', out_signature='')
def SetSilently(self, path, interface, name, value):
    mockobject.objects[path].props[interface][name] = value


@dbus.service.method(MOCK, in_signature='isav', out_signature='s', async_callbacks=('ok', 'err'))
def CallAgent(self, pid, method, arguments, ok, err):
    '''Returns the client's answer, or the name of its error.'''
    path = mockobject.objects['/org/bluez'].agent_paths[-1]
    self.connection.call_async(
        client(self.connection, pid), path, 'org.bluez.Agent1', method, AGENT_SIGNATURES[method],
        arguments, lambda *answer: ok(' '.join(['ok'] + [str(value) for value in answer])),
        lambda error: ok(error.get_dbus_name()))


@dbus.service.method(MOCK, in_signature='io', out_signature='')
def AskAndCancel(self, pid, device):
    '''Sends a question and its cancellation, without waiting for the answer.'''
    agent = client(self.connection, pid)
    path = mockobject.objects['/org/bluez'].agent_paths[-1]
    for method, arguments in (('RequestPinCode', [device]), ('Cancel', [])):
        self.connection.call_async(
            agent, path, 'org.bluez.Agent1', method, AGENT_SIGNATURES[method], arguments,
            lambda *answer, method=method: answers.append(f'{method} ok'),
            lambda error, method=method: answers.append(f'{method} {error.get_dbus_name()}'))


@dbus.service.method(MOCK, in_signature='i', out_signature='s')
def NameOf(self, pid):
    return client(self.connection, pid)


@dbus.service.method(MOCK, in_signature='', out_signature='s')
def AgentAnswers(self):
    return ' '.join(answers)


@dbus.service.method(MOCK, in_signature='', out_signature='s')
def Agents(self):
    '''Returns the agents with their capabilities.'''
    bluez = mockobject.objects['/org/bluez']
    return ' '.join(f'{path} {bluez.capabilities[path]}' for path in bluez.agent_paths)


@dbus.service.method(MOCK, in_signature='ioo', out_signature='s', async_callbacks=('ok', 'err'))
def ConnectProfile(self, pid, profile, device, ok, err):
    ours, theirs = socket.socketpair()
    sockets.append(ours)
    self.connection.call_async(
        client(self.connection, pid), profile, 'org.bluez.Profile1', 'NewConnection', 'oha{sv}',
        [device, dbus.types.UnixFd(theirs), dbus.Dictionary({}, signature='sv')],
        lambda: ok('ok'), lambda error: ok(error.get_dbus_name()))
    theirs.close()


@dbus.service.method(MOCK, in_signature='ioo', out_signature='s', async_callbacks=('ok', 'err'))
def DisconnectProfile(self, pid, profile, device, ok, err):
    self.connection.call_async(
        client(self.connection, pid), profile, 'org.bluez.Profile1', 'RequestDisconnection', 'o',
        [device], lambda: ok('ok'), lambda error: ok(error.get_dbus_name()))


@dbus.service.method(MOCK, in_signature='s', out_signature='')
def SendToSocket(self, text):
    sockets[-1].sendall(text.encode())


@dbus.service.method(MOCK, in_signature='i', out_signature='s')
def ReceiveFromSocket(self, size):
    '''Returns an empty text if the other side has closed the socket.'''
    sockets[-1].settimeout(10)
    return sockets[-1].recv(size).decode()


@dbus.service.method(MOCK, in_signature='', out_signature='')
def CloseSocket(self):
    sockets.pop().close()
